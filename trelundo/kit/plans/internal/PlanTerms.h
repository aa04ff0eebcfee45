#pragma once

#include "trelundo/kit/store/Products.h"
#include "trelundo/platform/storekit/SKPayment.h"
#include "trelundo/platform/storekit/SKProduct.h"

#include <cstdint>
#include <initializer_list>
#include <optional>

namespace trelundo {

/// The terms under which `product` would be bought: the promotional offer whose identifier is that of
/// `paymentDiscount` (an offer without identifier matches an absent payment discount), else the introductory
/// price unless it was offered before, else null.
Ref<SKProductDiscount> offerDiscount(SKProduct const& product, Ref<SKPaymentDiscount> const& paymentDiscount,
                                     bool introductoryPriceWasOffered);

bool isFreeTrial(Ref<SKProductDiscount> const& discount);

/// The first product whose period is one of `periods`; null when there is none.
Ref<SKProduct> firstWithPeriod(Products const& products,
                               std::initializer_list<SKProductSubscriptionPeriod> periods);

/// How much cheaper `yearlyPrice` is than `count` times `price`, in percent, rounded to tens with halves away
/// from zero. Not bounded: a dearer year gives a negative figure. A zero `price` ends the program.
std::int64_t savingPercentage(Decimal const& yearlyPrice, Decimal const& price, int count);

/// The saving of a yearly product against the first product of one month, else of 7 days; absent when there
/// is neither.
std::optional<std::int64_t> yearlySaving(SKProduct const& yearly, Products const& products);

} // namespace trelundo
