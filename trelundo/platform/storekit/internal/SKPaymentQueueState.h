#pragma once

#include "trelundo/platform/storekit/SKPaymentQueue.h"
#include "trelundo/platform/storekit/StoreBackend.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <unordered_map>
#include <unordered_set>

namespace trelundo {

/// What a queue keeps, and how it delivers. Everything but Inbox belongs to the main thread.
struct SKPaymentQueue::State {
    using Event = std::function<void(State&)>;

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
    void deliver(SKPaymentTransactions const& changed);
    void offerPromotedPurchase(SKPayment::Fields const& payment, Ref<SKProduct> const& product);

    // Operations
    void submit(SKPayment::Fields const& payment);
    void restore(std::optional<std::string> username);
    void startNextRestore();
    void endRestore(Ref<NSError> const& error, bool isSuccess);
    void finish(Ref<SKPaymentTransaction> const& transaction);
    void remove(SKPaymentTransactions const& finished);
    void later(Event event) const { inbox->post(std::move(event)); }
    void replaceBackend(StoreBackend* replacement);

    SKPaymentQueue& queue;
    StoreBackend* backend = nullptr;
    std::unique_ptr<Inbox> inbox = std::make_unique<Inbox>(queue);
    SKPaymentQueueMonitor* monitor = nullptr;
    std::vector<Observer> observers;
    std::uint64_t sequence = 0; // grows with every delivery and every new observer
    bool isSynchronized = false;
    std::deque<Event> heldEvents;     // came while nobody observed
    std::deque<Event> heldOperations; // asked for while nobody observed

    SKPaymentTransactions pending;
    std::unordered_map<std::string, Entry> entries; // by the store's key
    std::unordered_map<SKPaymentTransaction const*, std::string> keys;
    std::unordered_set<std::string> finishedKeys; // a late report of one is stale
    std::uint64_t localCount = 0;

    bool isRestoring = false;
    std::deque<std::optional<std::string>> restoresWaiting;
    SKPaymentTransactions restored;          // of the running restore, not yet delivered
    SKPaymentTransactions finishedInRestore; // leave once the running restore has reported its end
};

} // namespace trelundo
