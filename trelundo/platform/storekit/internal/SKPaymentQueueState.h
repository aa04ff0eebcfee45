#pragma once

#include "trelundo/platform/storekit/SKPaymentQueue.h"
#include "trelundo/platform/storekit/StoreBackend.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <unordered_map>
#include <unordered_set>

namespace trelundo {

/// What a queue keeps, and how it delivers. Everything but Inbox belongs to the main thread.
struct SKPaymentQueue::State {
    using Event = std::function<void(State&)>;

    /// Tells a products request why it has failed.
    using RequestFailure = std::function<void(Ref<NSError> const&)>;

    /// The listener of one backend. It turns every call into an event of a later turn; events of a backend
    /// that has been replaced are dropped.
    class Inbox : public StoreBackendListener {
    public:
        explicit Inbox(SKPaymentQueue& queue)
            : queue_(&queue) {}

        void transactionsUpdated(std::vector<StoreTransaction> transactions) override;
        void restoreFinished() override;
        void restoreFailed(Ref<NSError> error) override;
        void promotedPurchase(SKPayment::Fields payment, Ref<SKProduct> product) override;
        void storefrontChanged() override;

        /// Runs `event` in a later turn unless this backend has been replaced by then.
        void post(Event event) const;

    private:
        Weak<SKPaymentQueue> queue_;
        std::shared_ptr<char const> token_ = std::make_shared<char const>('\0'); // expires with this object
    };

    struct Observer {
        Weak<SKPaymentTransactionObserver> observer;
        std::uint64_t joinedAt = 0;
    };

    struct Entry {
        Ref<SKPaymentTransaction> transaction;
        std::uint64_t deliveredAt = 0; // 0: never
        bool isFinished = false;
        bool awaitsRestoreEnd = false;
    };

    explicit State(SKPaymentQueue& owner)
        : queue(owner) {}

    // Observers
    bool hasObservers() const;
    void call(std::function<void(SKPaymentTransactionObserver&)> const& callback);
    bool isRegistered(Observer const& observer) const;
    void add(Weak<SKPaymentTransactionObserver> observer);
    void welcome(Observer const& newcomer);
    void synchronize();

    // Events of the store
    void receive(Event event);
    void flushHeld();
    void performOrHold(Event operation);
    void update(std::vector<StoreTransaction> const& reports);
    Entry* apply(StoreTransaction const& report); // null: finished before
    Entry& begin(StoreTransaction const& report);
    void deliver(SKPaymentTransactions const& changed);
    void offerPromotedPurchase(SKPayment::Fields const& payment, Ref<SKProduct> const& product);

    // Operations
    void submit(SKPayment::Fields const& payment);
    void refuse(SKPayment::Fields const& payment, Ref<NSError> const& error);
    void startNextRestore();
    void endRestore(Ref<NSError> const& error, bool isSuccess);
    void finish(Ref<SKPaymentTransaction> const& transaction);
    void remember(std::string const& finishedKey);
    void removeFinished();
    void remove(SKPaymentTransactions const& leaving);
    void compact(); // `pending`
    void later(Event event) const { inbox->post(std::move(event)); }
    void replaceBackend(StoreBackend* replacement);
    std::vector<SKPayment::Fields> paymentsUnderWay() const;
    void forgetBackend();
    void refuseRestore() const;

    SKPaymentQueue& queue;
    StoreBackend* backend = nullptr;
    std::unique_ptr<Inbox> inbox = std::make_unique<Inbox>(queue);
    SKPaymentQueueMonitor* monitor = nullptr;
    std::vector<Observer> observers;
    std::uint64_t sequence = 0; // grows with every delivery and every new observer
    bool isSynchronized = false;
    std::deque<Event> heldEvents;     // came while nobody observed
    std::deque<Event> heldOperations; // asked for while nobody observed

    std::map<std::uint64_t, RequestFailure> requests; // products requests that the backend has not answered
    std::uint64_t requestCount = 0;

    SKPaymentTransactions pending;                  // and some that have left it; compact() before use
    std::size_t goneCount = 0;                      // of those
    std::unordered_map<std::string, Entry> entries; // by the store's key
    std::unordered_map<SKPaymentTransaction const*, std::string> keys;
    std::deque<SKPayment::Fields> submitted;      // payments that the backend has not told of yet
    std::unordered_set<std::string> finishedKeys; // a late report of one is stale
    std::deque<std::string> finishedOrder;        // of the same keys
    SKPaymentTransactions finished;               // not removed yet
    bool isRemovalPlanned = false;
    std::uint64_t localCount = 0;

    bool isRestoring = false;
    std::deque<std::optional<std::string>> restoresWaiting;
    SKPaymentTransactions restored; // of the running restore, not yet delivered
};

} // namespace trelundo
