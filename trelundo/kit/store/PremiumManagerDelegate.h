#pragma once

#include "trelundo/kit/store/EventParameters.h"
#include "trelundo/kit/store/Products.h"
#include "trelundo/platform/storekit/SKPaymentQueue.h"

#include <optional>
#include <string>

namespace trelundo {

/// The host's side of the store client: answers questions, receives products and analytics events.
class PremiumManagerDelegate {
public:
    virtual ~PremiumManagerDelegate() = default;
    /// The account token for payments; absent: none.
    virtual std::optional<std::string> applicationUsername() const { return std::nullopt; }
    virtual void logEvent(std::string const& /*name*/) {}
    virtual void logEvent(std::string const& /*name*/, EventParameters const& /*parameters*/) {}
    /// The products request has finished, completely or not; `products` is in the host's order.
    virtual void premiumManagerDidLoadProducts(Products const& products) = 0;
    /// Whether a purchase promoted in the store goes on now.
    virtual bool paymentQueueShouldAddStorePayment(SKPaymentQueue& /*queue*/,
                                                   Ref<SKPayment> const& /*payment*/,
                                                   Ref<SKProduct> const& /*product*/) {
        return false;
    }
};

} // namespace trelundo
