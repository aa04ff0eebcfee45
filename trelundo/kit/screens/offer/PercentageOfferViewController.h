#pragma once

#include "trelundo/kit/screens/offer/ThemedOfferViewController.h"

#include <optional>

namespace trelundo {

/// An offer of a yearly product as a very large percentage over "OFF", with the offer's price and the regular
/// one struck through. A product price of zero ends the program.
class PercentageOfferViewController : public ThemedOfferViewController {
public:
    /// Decides sizes only: a language that contains "en" gives the large headline. The user's first language
    /// at first.
    std::optional<std::string> const& preferredLanguage() const { return preferredLanguage_; }
    void setPreferredLanguage(std::optional<std::string> language) {
        preferredLanguage_ = std::move(language);
    }

protected:
    PercentageOfferViewController();

    void showOffer(SKProduct const& product, SKProductDiscount const& discount) override;
    Ref<UIStackView> makeStack() override;
    /// What stands above the percentage; null: nothing.
    virtual Ref<UIView> badge() { return nullptr; }

private:
    bool isEnglish() const;
    Ref<UILabel> makeHeadline();
    Ref<UILabel> const& offerLine1Label();
    Ref<UILabel> const& offerLine2Label();

    std::optional<std::string> preferredLanguage_;
    Lazy<UILabel> offerLine1Label_{"offerLine1Label"};
    Lazy<UILabel> offerLine2Label_{"offerLine2Label"};
    Ref<UILabel> infoLine1Label_;
    Ref<UILabel> infoLine2Label_;
};

} // namespace trelundo
