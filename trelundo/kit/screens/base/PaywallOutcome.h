#pragma once

#include "trelundo/platform/storekit/SKPaymentQueue.h"

namespace trelundo {

/// What came of one presentation of a paywall or offer screen.
struct PaywallOutcome {
    enum class Kind : int {
        purchased = 0,
        restored = 1,
        waitingForApproval = 2, // the store tells the rest later, maybe in another run
        closed = 3,             // by the user, without any of these
        takenAway = 4,          // by the host or with its window, without any of these
    };

    Kind kind = Kind::takenAway;
    /// Purchased, or waiting for approval; null when the catalogue does not have it, and otherwise.
    Ref<SKProduct> product = nullptr;
    /// Of the purchase, with its receipt; null otherwise.
    Ref<SKPaymentTransaction> transaction = nullptr;
    /// What the store gave back, in its order; empty when there was nothing to restore, and otherwise.
    SKPaymentTransactions restored = {};
};

} // namespace trelundo
