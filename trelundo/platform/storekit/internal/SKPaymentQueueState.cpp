#include "trelundo/platform/storekit/internal/SKPaymentQueueState.h"

#include "trelundo/platform/foundation/DispatchQueue.h"
#include "trelundo/platform/foundation/Log.h"
#include "trelundo/platform/storekit/SKError.h"

#include <algorithm>

namespace trelundo {

namespace {

/// Whether a transaction may be finished now.
Result<void> checkFinish(SKPaymentTransactionState state, bool isFinished) {
    if (isFinished) return Error{"it is finished already"};
    if (state == SKPaymentTransactionState::purchasing) return Error{"it is still purchasing"};
    if (state == SKPaymentTransactionState::deferred) return Error{"it waits for approval"};
    return {};
}

} // namespace

// Reports of the store

void SKPaymentQueue::State::Inbox::post(Event event) const {
    DispatchQueue::main().async(
        [queue = queue_, token = std::weak_ptr<char const>(token_), event = std::move(event)] {
            auto const held = queue.lock();
            if (held && !token.expired()) event(*held->state_);
        });
}

void SKPaymentQueue::State::Inbox::transactionsUpdated(std::vector<StoreTransaction> transactions) {
    post([transactions = std::move(transactions)](State& state) {
        // Before the first observer there is nothing to tell: synchronizing will bring everything again.
        if (!state.isSynchronized) return;
        state.receive([transactions](State& receiver) { receiver.update(transactions); });
    });
}

void SKPaymentQueue::State::Inbox::restoreFinished() {
    post([](State& state) { state.receive([](State& receiver) { receiver.endRestore(nullptr, true); }); });
}

void SKPaymentQueue::State::Inbox::restoreFailed(Ref<NSError> error) {
    post([error](State& state) {
        state.receive([error](State& receiver) { receiver.endRestore(error, false); });
    });
}

void SKPaymentQueue::State::Inbox::promotedPurchase(SKPayment::Fields payment, Ref<SKProduct> product) {
    post([payment = std::move(payment), product](State& state) {
        state.receive(
            [payment, product](State& receiver) { receiver.offerPromotedPurchase(payment, product); });
    });
}

void SKPaymentQueue::State::Inbox::storefrontChanged() {
    post([](State& state) {
        state.receive([](State& receiver) {
            receiver.call([&](auto& observer) { observer.paymentQueueDidChangeStorefront(receiver.queue); });
        });
    });
}

void SKPaymentQueue::State::receive(Event event) {
    heldEvents.push_back(std::move(event));
    flushHeld();
}

void SKPaymentQueue::State::flushHeld() {
    while (!heldEvents.empty() && hasObservers()) {
        auto const event = std::move(heldEvents.front());
        heldEvents.pop_front();
        event(*this);
    }
}

void SKPaymentQueue::State::update(std::vector<StoreTransaction> const& reports) {
    SKPaymentTransactions changed;
    for (auto const& report : reports) {
        auto* entry = apply(report);
        if (!entry || entry->awaitsRestoreEnd) continue;
        entry->awaitsRestoreEnd = isRestoring && report.state == SKPaymentTransactionState::restored;
        (entry->awaitsRestoreEnd ? restored : changed).push_back(entry->transaction);
    }
    deliver(changed);
}

SKPaymentQueue::State::Entry* SKPaymentQueue::State::apply(StoreTransaction const& report) {
    if (finishedKeys.contains(report.key)) return nullptr;
    auto& entry = entries[report.key];
    if (!entry.transaction) {
        entry.transaction = make<SKPaymentTransaction>(
            SKPaymentTransaction::Fields{.payment = make<SKPayment>(report.payment)});
        keys[entry.transaction.get()] = report.key;
        pending.push_back(entry.transaction);
    }
    auto& fields = entry.transaction->fields_;
    fields.state = report.state;
    fields.error = report.error;
    if (!report.transactionIdentifier.empty()) {
        fields.identifier = report.transactionIdentifier;
        fields.date = report.date;
    }
    if (!report.originalIdentifier.empty())
        fields.original = make<SKPaymentTransaction>(
            SKPaymentTransaction::Fields{.payment = fields.payment,
                                         .state = SKPaymentTransactionState::purchased,
                                         .identifier = report.originalIdentifier,
                                         .date = report.originalDate});
    return &entry;
}

void SKPaymentQueue::State::deliver(SKPaymentTransactions const& changed) {
    if (changed.empty()) return;
    ++sequence;
    for (auto const& transaction : changed) {
        auto const& key = keys.at(transaction.get());
        entries.at(key).deliveredAt = sequence;
        if (monitor) monitor->transactionUpdated(key, *transaction);
    }
    call([&](auto& observer) { observer.paymentQueueUpdatedTransactions(queue, changed); });
}

void SKPaymentQueue::State::offerPromotedPurchase(SKPayment::Fields const& payment,
                                                  Ref<SKProduct> const& product) {
    auto const offered = make<SKPayment>(payment);
    bool isAccepted = false;
    call([&](auto& observer) {
        isAccepted = isAccepted || observer.paymentQueueShouldAddStorePayment(queue, offered, product);
    });
    if (isAccepted) queue.add(offered);
}

// Observers

bool SKPaymentQueue::State::hasObservers() const {
    return std::ranges::any_of(observers,
                               [](Observer const& each) { return static_cast<bool>(each.observer.lock()); });
}

bool SKPaymentQueue::State::isRegistered(Observer const& observer) const {
    return std::ranges::any_of(observers, [&](Observer const& each) {
        return each.joinedAt == observer.joinedAt && each.observer.refersToSame(observer.observer);
    });
}

void SKPaymentQueue::State::call(std::function<void(SKPaymentTransactionObserver&)> const& callback) {
    // A callback may add, remove and destroy observers: who joins now waits for the next call, who left is
    // not called.
    auto const present = observers;
    for (auto const& each : present) {
        if (!isRegistered(each)) continue;
        if (auto const observer = each.observer.lock()) callback(*observer);
    }
}

void SKPaymentQueue::State::add(Weak<SKPaymentTransactionObserver> observer) {
    std::erase_if(observers, [](Observer const& each) { return !each.observer.lock(); });
    auto const isSame = [&](Observer const& each) { return each.observer.refersToSame(observer); };
    if (!observer.lock() || std::ranges::any_of(observers, isSame)) return;
    observers.push_back({std::move(observer), ++sequence});
    later([newcomer = observers.back()](State& state) { state.welcome(newcomer); });
    synchronize();
    for (auto const& operation : std::exchange(heldOperations, {})) operation(*this);
}

void SKPaymentQueue::State::synchronize() {
    if (!backend || isSynchronized || !hasObservers()) return;
    isSynchronized = true;
    backend->synchronize();
}

void SKPaymentQueue::State::welcome(Observer const& newcomer) {
    auto const observer = newcomer.observer.lock();
    if (!observer || !isRegistered(newcomer)) return;
    SKPaymentTransactions unheard;
    for (auto const& transaction : pending) {
        auto const& key = keys.at(transaction.get());
        auto const& entry = entries.at(key);
        if (entry.isFinished || entry.deliveredAt == 0 || entry.deliveredAt > newcomer.joinedAt) continue;
        if (monitor) monitor->transactionUpdated(key, *transaction);
        unheard.push_back(transaction);
    }
    if (!unheard.empty()) observer->paymentQueueUpdatedTransactions(queue, unheard);
    flushHeld();
}

// Operations

void SKPaymentQueue::State::performOrHold(Event operation) {
    if (hasObservers()) {
        operation(*this);
    } else {
        heldOperations.push_back(std::move(operation));
    }
}

void SKPaymentQueue::State::submit(SKPayment::Fields const& payment) {
    if (backend) return backend->addPayment(payment);
    StoreTransaction const refused{.key = "local-" + std::to_string(++localCount),
                                   .payment = payment,
                                   .state = SKPaymentTransactionState::failed,
                                   .error = makeStoreError(SKErrorCode::unknown)};
    later([refused](State& state) { state.update({refused}); });
}

void SKPaymentQueue::State::startNextRestore() {
    if (isRestoring || restoresWaiting.empty()) return;
    isRestoring = true;
    auto const username = std::move(restoresWaiting.front());
    restoresWaiting.pop_front();
    if (backend) return backend->restore(username);
    later([](State& state) { state.endRestore(makeStoreError(SKErrorCode::unknown), false); });
}

void SKPaymentQueue::State::endRestore(Ref<NSError> const& error, bool isSuccess) {
    for (auto const& transaction : restored) entries.at(keys.at(transaction.get())).awaitsRestoreEnd = false;
    deliver(std::exchange(restored, {}));
    call([&](auto& observer) {
        if (isSuccess) {
            observer.paymentQueueRestoreCompletedTransactionsFinished(queue);
        } else {
            observer.paymentQueueRestoreCompletedTransactionsFailed(queue, error);
        }
    });
    isRestoring = false;
    later([finished = std::exchange(finishedInRestore, {})](State& state) {
        state.remove(finished);
        state.startNextRestore();
    });
}

void SKPaymentQueue::State::finish(Ref<SKPaymentTransaction> const& transaction) {
    auto const key = keys.find(transaction.get());
    if (key == keys.end()) return logWarning("A transaction was not finished: it is not on the queue");
    auto& entry = entries.at(key->second);
    auto finished = checkFinish(transaction->transactionState(), entry.isFinished);
    if (finished && backend) finished = backend->finish(key->second);
    if (!finished)
        return logWarning("Transaction " + key->second + " was not finished: " + finished.error().message);
    entry.isFinished = true;
    finishedKeys.insert(key->second);
    if (monitor) monitor->transactionFinished(key->second, *transaction);
    // What leaves during a restore would let its end find an empty queue, and the restore would complete
    // twice.
    if (isRestoring) return finishedInRestore.push_back(transaction);
    later([transaction](State& state) { state.remove({transaction}); });
}

void SKPaymentQueue::State::remove(SKPaymentTransactions const& finished) {
    if (finished.empty()) return;
    for (auto const& transaction : finished) {
        entries.erase(keys.at(transaction.get()));
        keys.erase(transaction.get());
    }
    std::erase_if(pending, [&](auto const& transaction) { return !keys.contains(transaction.get()); });
    call([&](auto& observer) { observer.paymentQueueRemovedTransactions(queue, finished); });
}

void SKPaymentQueue::State::replaceBackend(StoreBackend* replacement) {
    if (backend) backend->setListener(nullptr);
    backend = replacement;
    inbox = std::make_unique<Inbox>(queue);
    heldEvents.clear();
    entries.clear();
    keys.clear();
    pending.clear();
    finishedKeys.clear();
    restored.clear();
    finishedInRestore.clear();
    restoresWaiting.clear();
    isRestoring = isSynchronized = false;
    if (!backend) return;
    backend->setListener(inbox.get());
    synchronize();
}

} // namespace trelundo
