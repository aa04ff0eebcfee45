#pragma once

#include "trelundo/platform/foundation/NSError.h"
#include "trelundo/platform/storekit/SKPayment.h"

#include <optional>
#include <string>

namespace trelundo {

enum class SKPaymentTransactionState : int {
    purchasing = 0,
    purchased = 1,
    failed = 2,
    restored = 3,
    deferred = 4
};

/// One purchase or restoration on the queue. The queue updates it in place: the same object comes again with
/// a new state.
class SKPaymentTransaction : public NSObject {
public:
    struct Fields {
        Ref<SKPayment> payment = nullptr;
        SKPaymentTransactionState state = SKPaymentTransactionState::purchasing;
        Ref<NSError> error = nullptr;
        std::optional<std::string> identifier = std::nullopt;
        std::optional<double> date = std::nullopt;
        Ref<SKPaymentTransaction> original = nullptr;
        std::string receipt = {};
    };
    explicit SKPaymentTransaction(Fields fields)
        : fields_(std::move(fields)) {}

    Ref<SKPayment> const& payment() const { return fields_.payment; }
    SKPaymentTransactionState transactionState() const { return fields_.state; }
    /// Failed transactions only; null also for a failure that a script injected without error.
    Ref<NSError> const& error() const { return fields_.error; }
    /// Purchased and restored transactions only.
    std::optional<std::string> const& transactionIdentifier() const { return fields_.identifier; }
    /// Seconds since 2001-01-01 00:00 UTC; purchased and restored transactions only.
    std::optional<double> transactionDate() const { return fields_.date; }
    /// Restored transactions only: the first purchase.
    Ref<SKPaymentTransaction> const& original() const { return fields_.original; }
    /// Opaque bytes by which a server can check the transaction with the store; empty when the store gives
    /// none.
    std::string const& transactionReceipt() const { return fields_.receipt; }

private:
    friend class SKPaymentQueue;

    Fields fields_;
};

} // namespace trelundo
