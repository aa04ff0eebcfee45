#pragma once

#include "trelundo/kit/store/EventParameters.h"
#include "trelundo/kit/store/Products.h"
#include "trelundo/platform/storekit/SKPaymentQueue.h"

#include <optional>
#include <string>

namespace trelundo {

/// The host's side of the store client: answers questions, receives products and analytics events, on the
/// main thread. What a host must answer is pure; the rest has the default that is stated.
class PremiumManagerDelegate {
public:
    virtual ~PremiumManagerDelegate() = default;
    /// The account token for payments, opaque; by default absent, so that payments carry none.
    virtual std::optional<std::string> applicationUsername() const { return std::nullopt; }
    /// An event of analytics, without or with parameters. By default events go nowhere. Who overrides one
    /// form brings the other in with `using PremiumManagerDelegate::logEvent`.
    virtual void logEvent(std::string const& /*name*/) {}
    virtual void logEvent(std::string const& /*name*/, EventParameters const& /*parameters*/) {}
    /// The products request has finished, completely or not; `products` is in the host's order.
    virtual void premiumManagerDidLoadProducts(Products const& products) = 0;
    /// Whether a purchase that the user began in the store goes on now. By default it does not.
    virtual bool paymentQueueShouldAddStorePayment(SKPaymentQueue& /*queue*/,
                                                   Ref<SKPayment> const& /*payment*/,
                                                   Ref<SKProduct> const& /*product*/) {
        return false;
    }
};

} // namespace trelundo
