#pragma once

#include "trelundo/platform/storekit/StoreBackend.h"

#include <cstdint>
#include <optional>

namespace trelundo {

/// Where a transaction of the ledger stands: as SKPaymentTransactionState, by the same numbers, and `held`.
enum class LedgerState : int {
    purchasing = 0,
    purchased = 1,
    failed = 2,
    restored = 3,
    deferred = 4,
    held = 5 // a purchase kept back until an interruption is resolved; unknown to the queue
};

/// One transaction of the ledger.
struct LedgerRecord {
    std::int64_t identifier = 0;
    SKPayment::Fields payment = {};
    LedgerState state = LedgerState::purchasing;
    bool isRestorable = false;
    bool isFinished = false;
    Ref<NSError> error = nullptr;
    std::optional<double> date = std::nullopt; // seconds since 2001-01-01 00:00 UTC
    std::optional<std::int64_t> original = std::nullopt;
    double originalDate = 0;

    /// What the store tells the queue; the key is the identifier's text. A held one reads as purchasing.
    StoreTransaction report() const;
};

/// What a transaction becomes.
struct LedgerOutcome {
    LedgerState state = LedgerState::purchased;
    Ref<NSError> error = nullptr;
    double date = 0;
    bool isInterrupted = false; // beside the failure, a purchase is held back
};

} // namespace trelundo
