#pragma once

#include "trelundo/platform/storekit/SKProduct.h"

#include <string>
#include <vector>

namespace trelundo::test {

/// Terms of a discount by which tests tell products apart.
struct Offer {
    SKProductDiscountPaymentMode mode = SKProductDiscountPaymentMode::freeTrial;
    char const* price = "0";
    SKProductSubscriptionPeriod period = {1, SKProductPeriodUnit::week};
    int count = 1;
    std::optional<std::string> identifier = std::nullopt;
};

inline Ref<SKProductDiscount> makeDiscount(Offer const& offer) {
    return make<SKProductDiscount>(SKProductDiscount::Fields{.identifier = offer.identifier,
                                                             .paymentMode = offer.mode,
                                                             .price = *Decimal::parse(offer.price),
                                                             .subscriptionPeriod = offer.period,
                                                             .numberOfPeriods = offer.count});
}

inline Ref<SKProduct> makeProduct(std::string identifier, char const* price,
                                  std::optional<SKProductSubscriptionPeriod> period,
                                  std::optional<Offer> introductory = std::nullopt,
                                  std::vector<Offer> const& promotional = {},
                                  char const* locale = "en_US@currency=USD") {
    SKProduct::Fields fields{.productIdentifier = std::move(identifier),
                             .price = *Decimal::parse(price),
                             .priceLocale = Locale{locale},
                             .subscriptionPeriod = period};
    if (introductory) fields.introductoryPrice = makeDiscount(*introductory);
    for (auto const& offer : promotional) fields.discounts.push_back(makeDiscount(offer));
    return make<SKProduct>(std::move(fields));
}

inline constexpr SKProductSubscriptionPeriod year{1, SKProductPeriodUnit::year};
inline constexpr SKProductSubscriptionPeriod month{1, SKProductPeriodUnit::month};
inline constexpr SKProductSubscriptionPeriod week{1, SKProductPeriodUnit::week};
inline constexpr SKProductSubscriptionPeriod sevenDays{7, SKProductPeriodUnit::day};

inline Ref<SKProduct> yearly() { return makeProduct("yearly", "29.99", year); }
inline Ref<SKProduct> monthly() { return makeProduct("monthly", "4.99", month); }

} // namespace trelundo::test
