#pragma once

#include "trelundo/platform/foundation/NSError.h"
#include "trelundo/platform/foundation/Result.h"
#include "trelundo/platform/storekit/SKPayment.h"
#include "trelundo/platform/storekit/SKPaymentTransaction.h"
#include "trelundo/platform/storekit/SKProduct.h"

#include <functional>
#include <set>
#include <string>
#include <vector>

namespace trelundo {

/// What a store tells the queue about one transaction. `key` is the store's own durable name for it; the
/// queue keeps one SKPaymentTransaction per key.
struct StoreTransaction {
    std::string key = {};
    SKPayment::Fields payment = {};
    SKPaymentTransactionState state = SKPaymentTransactionState::purchasing;
    Ref<NSError> error = nullptr;
    std::string transactionIdentifier = {}; // empty: none yet
    double date = 0;                        // seconds since 2001-01-01 00:00 UTC
    std::string originalIdentifier = {};    // restored ones: of the first purchase; empty: none
    double originalDate = 0;
};

/// Receives what a store reports. A key that comes twice in one update is told once, in its last state; one
/// that is finished already, and the end of a restore that nobody asked for, are dropped. Calls may come from
/// any thread, also inside the call that caused them: the queue moves every one of them to a later turn of
/// the main queue, in the order in which they came.
class StoreBackendListener {
public:
    virtual ~StoreBackendListener() = default;
    virtual void transactionsUpdated(std::vector<StoreTransaction> transactions) = 0;
    virtual void restoreFinished() = 0;
    virtual void restoreFailed(Ref<NSError> error) = 0;
    virtual void promotedPurchase(SKPayment::Fields payment, Ref<SKProduct> product) = 0;
    virtual void storefrontChanged() = 0;
};

/// The seam between the store framework and a store. The embedded sandbox is one implementation; a host can
/// bring its own. It is called on the main thread. Results come through the listener or the callback, at once
/// or later.
class StoreBackend {
public:
    struct ProductsResult {
        std::vector<Ref<SKProduct>> products = {};
        std::vector<std::string> invalidIdentifiers = {};
        Ref<NSError> error = nullptr; // not null: the request failed
    };

    virtual ~StoreBackend() = default;
    /// Null: nobody listens any more; no call to the former listener may be running or follow.
    virtual void setListener(StoreBackendListener* listener) = 0;
    virtual void loadProducts(std::set<std::string> const& identifiers,
                              std::function<void(ProductsResult)> done) = 0;
    virtual bool canMakePayments() const = 0;
    /// Takes a payment, and reports its transaction. Replaced by another store before that transaction is
    /// over, it is not asked again: the queue has told its observers that the payment failed.
    virtual void addPayment(SKPayment::Fields const& payment) = 0;
    /// Makes `key` durable as finished before it returns. When that fails nothing is lost: the transaction
    /// will come again.
    virtual Result<void> finish(std::string const& key) = 0;
    /// Ends with exactly one restoreFinished() or restoreFailed(), after the last restored transaction. The
    /// queue asks for one restore at a time.
    virtual void restore(std::optional<std::string> const& applicationUsername) = 0;
    /// Asks for every unfinished transaction to be reported again. The queue asks once, at its first
    /// observer.
    virtual void synchronize() = 0;
    virtual std::string storefront() const = 0; // "USA"
};

} // namespace trelundo
