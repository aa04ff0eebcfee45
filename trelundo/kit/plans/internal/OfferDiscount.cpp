#include "trelundo/kit/plans/internal/OfferDiscount.h"

#include <algorithm>
#include <optional>

namespace trelundo {

Ref<SKProductDiscount> introductoryOffer(SKProduct const& product, bool introductoryPriceWasOffered) {
    return introductoryPriceWasOffered ? nullptr : product.introductoryPrice();
}

Ref<SKProductDiscount> offerDiscount(SKProduct const& product, Ref<SKPaymentDiscount> const& paymentDiscount,
                                     bool introductoryPriceWasOffered) {
    auto const wanted = paymentDiscount ? std::optional{paymentDiscount->identifier()} : std::nullopt;
    auto const promotional = std::ranges::find(product.discounts(), wanted, &SKProductDiscount::identifier);
    if (promotional != product.discounts().end()) return *promotional;
    return introductoryOffer(product, introductoryPriceWasOffered);
}

bool isFreeTrial(Ref<SKProductDiscount> const& discount) {
    return discount && discount->paymentMode() == SKProductDiscountPaymentMode::freeTrial;
}

} // namespace trelundo
