#pragma once

#include "trelundo/kit/store/Products.h"
#include "trelundo/platform/storekit/SKProduct.h"

#include <string>

namespace trelundo {

/// What there is to say about one plan among the others on its screen, in the user's language. A text that
/// does not apply is empty.
class PlanTexts {
public:
    /// Both are to outlive the texts.
    PlanTexts(SKProduct const& product, Products const& products, bool introductoryPriceWasOffered);

    /// Exactly one year.
    bool isYearly() const;
    /// `key` with "%%%" replaced by the length of the free trial; empty without one.
    std::string trial(char const* key) const;
    std::string price() const;
    /// The price with the period that it pays for; plain where there is no suffix for the period.
    std::string billedAmount() const;
    /// A yearly price by the month when a monthly plan stands beside it, else by the week.
    std::string share() const;
    /// What a yearly plan saves against the first monthly, else the first weekly plan; empty unless positive.
    std::string saving() const;
    /// "Yearly", "3 Months"; the store's title for what is bought once.
    std::string name() const;

private:
    SKProduct const& product_;
    Products const& products_;
    bool introductoryPriceWasOffered_;
};

} // namespace trelundo
