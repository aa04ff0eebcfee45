#pragma once

#include "trelundo/platform/storekit/SKProduct.h"

#include <string>

namespace trelundo {

/// How the terms of a discount are told, with every price in the product's currency.
struct DiscountTexts {
    std::string terms;      // "3 Months for Just $4.99/mo", "Get 7 Days FREE!"
    std::string afterwards; // "Just $29.99 for a year, $59.99/year after"
};
DiscountTexts discountTexts(SKProductDiscount const& discount, SKProduct const& product);

} // namespace trelundo
