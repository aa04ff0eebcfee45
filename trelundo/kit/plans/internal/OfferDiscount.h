#pragma once

#include "trelundo/platform/storekit/SKPayment.h"
#include "trelundo/platform/storekit/SKProduct.h"

namespace trelundo {

/// The introductory price of `product`; null without one, and where it was offered before.
Ref<SKProductDiscount> introductoryOffer(SKProduct const& product, bool introductoryPriceWasOffered);

/// The terms under which `product` would be bought: the promotional offer whose identifier is that of
/// `paymentDiscount` (an offer without identifier matches an absent payment discount), else the introductory
/// offer.
Ref<SKProductDiscount> offerDiscount(SKProduct const& product, Ref<SKPaymentDiscount> const& paymentDiscount,
                                     bool introductoryPriceWasOffered);

bool isFreeTrial(Ref<SKProductDiscount> const& discount);

} // namespace trelundo
