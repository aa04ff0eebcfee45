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
    SKPaymentTransaction(Ref<SKPayment> payment, SKPaymentTransactionState state)
        : payment_(std::move(payment))
        , state_(state) {}

    Ref<SKPayment> const& payment() const { return payment_; }
    SKPaymentTransactionState transactionState() const { return state_; }
    /// Failed transactions only; null also for a failure that a script injected without error.
    Ref<NSError> const& error() const { return error_; }
    /// Purchased and restored transactions only.
    std::optional<std::string> const& transactionIdentifier() const { return identifier_; }
    /// Seconds since 2001-01-01 00:00 UTC; purchased and restored transactions only.
    std::optional<double> transactionDate() const { return date_; }
    /// Restored transactions only: the first purchase.
    Ref<SKPaymentTransaction> const& original() const { return original_; }

    // For the queue, a backend and tests.
    void setState(SKPaymentTransactionState state) { state_ = state; }
    void setError(Ref<NSError> error) { error_ = std::move(error); }
    void setTransactionIdentifier(std::optional<std::string> identifier) {
        identifier_ = std::move(identifier);
    }
    void setTransactionDate(std::optional<double> date) { date_ = date; }
    void setOriginal(Ref<SKPaymentTransaction> original) { original_ = std::move(original); }

private:
    Ref<SKPayment> payment_;
    SKPaymentTransactionState state_;
    Ref<NSError> error_;
    std::optional<std::string> identifier_;
    std::optional<double> date_;
    Ref<SKPaymentTransaction> original_;
};

} // namespace trelundo
