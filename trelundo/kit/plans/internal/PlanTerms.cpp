#include "trelundo/kit/plans/internal/PlanTerms.h"

#include "trelundo/platform/foundation/FatalError.h"

#include <algorithm>
#include <cmath>

namespace trelundo {

Ref<SKProductDiscount> offerDiscount(SKProduct const& product, Ref<SKPaymentDiscount> const& paymentDiscount,
                                     bool introductoryPriceWasOffered) {
    auto const wanted = paymentDiscount ? std::optional{paymentDiscount->identifier()} : std::nullopt;
    auto const promotional = std::ranges::find(product.discounts(), wanted, &SKProductDiscount::identifier);
    if (promotional != product.discounts().end()) return *promotional;
    return introductoryPriceWasOffered ? nullptr : product.introductoryPrice();
}

bool isFreeTrial(Ref<SKProductDiscount> const& discount) {
    return discount && discount->paymentMode() == SKProductDiscountPaymentMode::freeTrial;
}

Ref<SKProduct> firstWithPeriod(Products const& products,
                               std::initializer_list<SKProductSubscriptionPeriod> periods) {
    auto const found = std::ranges::find_if(products, [&](Ref<SKProduct> const& product) {
        auto const& period = product->subscriptionPeriod();
        return period && std::ranges::count(periods, *period) > 0;
    });
    return found == products.end() ? nullptr : *found;
}

std::int64_t savingPercentage(Decimal const& yearlyPrice, Decimal const& price, int count) {
    Decimal const saving = Decimal{1} - yearlyPrice / (price * Decimal{count});
    return trappingProduct(trappingInteger(std::round(saving.doubleValue() * 10)), 10);
}

std::optional<std::int64_t> yearlySaving(SKProduct const& yearly, Products const& products) {
    if (auto const monthly = firstWithPeriod(products, {{1, SKProductPeriodUnit::month}}))
        return savingPercentage(yearly.price(), monthly->price(), 12);
    if (auto const weekly = firstWithPeriod(products, {{7, SKProductPeriodUnit::day}}))
        return savingPercentage(yearly.price(), weekly->price(), 52);
    return std::nullopt;
}

} // namespace trelundo
