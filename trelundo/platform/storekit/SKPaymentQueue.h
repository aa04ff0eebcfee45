#pragma once

#include "trelundo/platform/foundation/NSError.h"
#include "trelundo/platform/foundation/Weak.h"
#include "trelundo/platform/storekit/SKPayment.h"
#include "trelundo/platform/storekit/SKPaymentTransaction.h"
#include "trelundo/platform/storekit/SKProduct.h"

#include <memory>
#include <string>
#include <vector>

namespace trelundo {

class SKPaymentQueue;
class StoreBackend;

using SKPaymentTransactions = std::vector<Ref<SKPaymentTransaction>>;

/// Hears what happens to transactions, on the main queue, never inside the call that caused it. An observer
/// may add or remove observers, buy, restore, finish or destroy other observers inside any callback. An
/// exception out of one leaves the queue whole: the other observers are called, then it passes on to the
/// loop.
class SKPaymentTransactionObserver {
public:
    virtual ~SKPaymentTransactionObserver() = default;
    virtual void paymentQueueUpdatedTransactions(SKPaymentQueue& queue,
                                                 SKPaymentTransactions const& transactions) = 0;
    virtual void paymentQueueRemovedTransactions(SKPaymentQueue&, SKPaymentTransactions const&) {}
    virtual void paymentQueueRestoreCompletedTransactionsFinished(SKPaymentQueue&) {}
    virtual void paymentQueueRestoreCompletedTransactionsFailed(SKPaymentQueue&,
                                                                Ref<NSError> const& /*error*/) {}
    /// A promoted purchase begun in the store: true adds `payment` at once.
    virtual bool paymentQueueShouldAddStorePayment(SKPaymentQueue&, Ref<SKPayment> const& /*payment*/,
                                                   Ref<SKProduct> const& /*product*/) {
        return false;
    }
    virtual void paymentQueueDidChangeStorefront(SKPaymentQueue&) {}
};

/// Records what passes through a queue, for a log. `id` is the store's durable name of the transaction, the
/// same in every state and in every run. Called at the moment of the event, before the observers.
class SKPaymentQueueMonitor {
public:
    virtual ~SKPaymentQueueMonitor() = default;
    virtual void paymentAdded(SKPayment const& /*payment*/) {}
    /// Once for each transaction of an update.
    virtual void transactionUpdated(std::string const& /*id*/, SKPaymentTransaction const& /*transaction*/) {}
    /// The transaction is durable as finished.
    virtual void transactionFinished(std::string const& /*id*/, SKPaymentTransaction const& /*transaction*/) {
    }
};

/// The pending transactions and their observers. Talks to one StoreBackend. Observers are held weakly;
/// nothing is delivered or processed while there is none: payments and restores wait for the first. Main
/// thread only.
class SKPaymentQueue : public NSObject {
public:
    SKPaymentQueue();
    ~SKPaymentQueue() override;

    static SKPaymentQueue& defaultQueue();
    /// Whether the user may pay on this device; asks the default queue's backend.
    static bool canMakePayments();

    /// On the next turn `observer` hears of every unfinished transaction. Adding one twice keeps one.
    void addTransactionObserver(Weak<SKPaymentTransactionObserver> observer);
    void removeTransactionObserver(NSObject const& observer);

    /// Copies `payment`; its transaction comes in a later turn. One without product identifier, or with a
    /// quantity outside 1 to 10, ends the program.
    void add(Ref<SKPayment> const& payment);
    /// A restore asked for while another runs follows it.
    void restoreCompletedTransactions(std::optional<std::string> applicationUsername = std::nullopt);
    /// Durable at once. Finishing twice, a stranger, or a transaction still purchasing or deferred is
    /// refused, logged and harmless.
    void finishTransaction(Ref<SKPaymentTransaction> const& transaction);
    /// The pending transactions. A finished one leaves the list asynchronously; a restored one not before a
    /// running restore has reported its end.
    SKPaymentTransactions const& transactions() const;
    /// Three-letter country code of the store.
    std::string storefrontCountryCode() const;

    /// Replaces the store behind the queue and drops what the old one had pending: products requests and
    /// restores that it has not answered, and purchases that are still purchasing, fail with code 0.
    /// `backend` must outlive its use; null: no store, every operation fails.
    void setBackend(StoreBackend* backend);
    StoreBackend* backend() const;

    /// `monitor` must outlive its use; null: nobody records.
    void setMonitor(SKPaymentQueueMonitor* monitor);

private:
    friend class SKProductsRequest; // fails when the backend is replaced

    struct State;
    std::unique_ptr<State> state_;
};

} // namespace trelundo
