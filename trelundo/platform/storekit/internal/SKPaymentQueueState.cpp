#include "trelundo/platform/storekit/internal/SKPaymentQueueState.h"

#include "trelundo/platform/foundation/DispatchQueue.h"
#include "trelundo/platform/foundation/FirstException.h"
#include "trelundo/platform/foundation/Log.h"
#include "trelundo/platform/foundation/Memory.h"
#include "trelundo/platform/storekit/SKError.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace trelundo {

namespace {

constexpr std::string_view localPrefix = "local-"; // of keys that no store knows
constexpr std::size_t rememberedFinishes = 10'000;

Ref<NSError> replacedError() {
    return make<NSError>(
        SKErrorDomain, static_cast<int>(SKErrorCode::unknown),
        NSError::UserInfo{{NSError::localizedDescriptionKey, "The store was replaced before it answered"}});
}

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
    requireMemory([&] {
        DispatchQueue::main().async(
            [queue = queue_, token = std::weak_ptr<char const>(token_), event = std::move(event)] {
                auto const held = queue.lock();
                if (held && !token.expired()) event(*held->state_);
            });
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
    FirstException failures;
    while (!heldEvents.empty() && hasObservers()) {
        auto const event = std::move(heldEvents.front());
        heldEvents.pop_front();
        failures.run([&] { event(*this); });
    }
    failures.rethrow();
}

void SKPaymentQueue::State::update(std::vector<StoreTransaction> const& reports) {
    SKPaymentTransactions changed;
    std::unordered_set<std::string_view> told;
    for (auto const& report : reports) {
        auto* entry = apply(report);
        if (!entry || entry->awaitsRestoreEnd || !told.insert(report.key).second) continue;
        entry->awaitsRestoreEnd = isRestoring && report.state == SKPaymentTransactionState::restored;
        (entry->awaitsRestoreEnd ? restored : changed).push_back(entry->transaction);
    }
    deliver(changed);
}

SKPaymentQueue::State::Entry& SKPaymentQueue::State::begin(StoreTransaction const& report) {
    auto& entry = entries[report.key];
    if (entry.transaction) return entry;
    entry.transaction =
        make<SKPaymentTransaction>(SKPaymentTransaction::Fields{.payment = make<SKPayment>(report.payment)});
    keys[entry.transaction.get()] = report.key;
    pending.push_back(entry.transaction);
    auto const asked =
        std::ranges::find(submitted, report.payment.productIdentifier, &SKPayment::Fields::productIdentifier);
    if (asked != submitted.end()) submitted.erase(asked);
    return entry;
}

SKPaymentQueue::State::Entry* SKPaymentQueue::State::apply(StoreTransaction const& report) {
    if (finishedKeys.contains(report.key)) return nullptr;
    auto& entry = begin(report);
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
    FirstException failures;
    for (auto const& each : present) {
        if (!isRegistered(each)) continue;
        if (auto const observer = each.observer.lock()) failures.run([&] { callback(*observer); });
    }
    failures.rethrow();
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
    compact();
    SKPaymentTransactions unheard;
    for (auto const& transaction : pending) {
        auto const& key = keys.at(transaction.get());
        auto const& entry = entries.at(key);
        if (entry.isFinished || entry.deliveredAt == 0 || entry.deliveredAt > newcomer.joinedAt) continue;
        if (monitor) monitor->transactionUpdated(key, *transaction);
        unheard.push_back(transaction);
    }
    FirstException failures;
    if (!unheard.empty()) failures.run([&] { observer->paymentQueueUpdatedTransactions(queue, unheard); });
    failures.run([&] { flushHeld(); });
    failures.rethrow();
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
    if (!backend) return refuse(payment, makeStoreError(SKErrorCode::unknown));
    submitted.push_back(payment);
    backend->addPayment(payment);
}

void SKPaymentQueue::State::refuse(SKPayment::Fields const& payment, Ref<NSError> const& error) {
    StoreTransaction const refused{.key = std::string{localPrefix} + std::to_string(++localCount),
                                   .payment = payment,
                                   .state = SKPaymentTransactionState::failed,
                                   .error = error};
    later([refused](State& state) {
        state.receive([refused](State& receiver) { receiver.update({refused}); });
    });
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
    if (!isRestoring) return logWarning("The end of a restore was dropped: no restore is running");
    for (auto const& transaction : restored) entries.at(keys.at(transaction.get())).awaitsRestoreEnd = false;
    FirstException failures;
    failures.run([&] { removeFinished(); });
    failures.run([&] { deliver(std::exchange(restored, {})); });
    failures.run([&] {
        call([&](auto& observer) {
            if (isSuccess) {
                observer.paymentQueueRestoreCompletedTransactionsFinished(queue);
            } else {
                observer.paymentQueueRestoreCompletedTransactionsFailed(queue, error);
            }
        });
    });
    isRestoring = false;
    later([](State& state) {
        FirstException removal;
        removal.run([&] { state.removeFinished(); });
        state.startNextRestore();
        removal.rethrow();
    });
    failures.rethrow();
}

void SKPaymentQueue::State::finish(Ref<SKPaymentTransaction> const& transaction) {
    auto const key = keys.find(transaction.get());
    if (key == keys.end()) return logWarning("A transaction was not finished: it is not on the queue");
    auto& entry = entries.at(key->second);
    auto mayFinish = checkFinish(transaction->transactionState(), entry.isFinished);
    bool const isKnown = backend && !key->second.starts_with(localPrefix);
    if (mayFinish && isKnown) mayFinish = backend->finish(key->second);
    if (!mayFinish)
        return logWarning("Transaction " + key->second + " was not finished: " + mayFinish.error().message);
    entry.isFinished = true;
    remember(key->second);
    finished.push_back(transaction);
    if (!std::exchange(isRemovalPlanned, true)) later([](State& state) { state.removeFinished(); });
    if (monitor) monitor->transactionFinished(key->second, *transaction);
}

void SKPaymentQueue::State::remember(std::string const& finishedKey) {
    finishedKeys.insert(finishedKey);
    finishedOrder.push_back(finishedKey);
    if (finishedOrder.size() <= rememberedFinishes) return;
    finishedKeys.erase(finishedOrder.front());
    finishedOrder.pop_front();
}

void SKPaymentQueue::State::removeFinished() {
    isRemovalPlanned = false;
    // The end of a restore must not find an empty queue when something was restored: that would read as a
    // restore of nothing, and complete twice.
    auto const mayLeave = [&](auto const& transaction) {
        return !isRestoring || transaction->transactionState() != SKPaymentTransactionState::restored;
    };
    auto const staying = std::ranges::stable_partition(finished, mayLeave).begin();
    SKPaymentTransactions const leaving{finished.begin(), staying};
    finished.erase(finished.begin(), staying);
    remove(leaving);
}

void SKPaymentQueue::State::remove(SKPaymentTransactions const& leaving) {
    if (leaving.empty()) return;
    for (auto const& transaction : leaving) {
        entries.erase(keys.at(transaction.get()));
        keys.erase(transaction.get());
    }
    goneCount += leaving.size();
    // Only now and then, so that many that leave one by one cost no more than all at once.
    if (goneCount > pending.size() / 2) compact();
    call([&](auto& observer) { observer.paymentQueueRemovedTransactions(queue, leaving); });
}

void SKPaymentQueue::State::compact() {
    if (std::exchange(goneCount, 0) == 0) return;
    std::erase_if(pending, [&](auto const& transaction) { return !keys.contains(transaction.get()); });
}

// Replacing the store

std::vector<SKPayment::Fields> SKPaymentQueue::State::paymentsUnderWay() const {
    std::vector<SKPayment::Fields> payments{submitted.begin(), submitted.end()};
    for (auto const& transaction : pending)
        if (transaction->transactionState() == SKPaymentTransactionState::purchasing)
            payments.push_back(transaction->payment()->fields());
    return payments;
}

void SKPaymentQueue::State::forgetBackend() {
    heldEvents.clear();
    entries.clear();
    keys.clear();
    pending.clear();
    goneCount = 0;
    submitted.clear();
    finishedKeys.clear();
    finishedOrder.clear();
    finished.clear();
    restored.clear();
    restoresWaiting.clear();
    requests.clear();
    isRestoring = isSynchronized = isRemovalPlanned = false;
}

void SKPaymentQueue::State::replaceBackend(StoreBackend* replacement) {
    if (backend) backend->setListener(nullptr);
    backend = replacement;
    inbox = std::make_unique<Inbox>(queue);
    auto const payments = paymentsUnderWay();
    auto const restoreCount = restoresWaiting.size() + (isRestoring ? 1 : 0);
    auto const unanswered = std::exchange(requests, {});
    forgetBackend();
    for (auto const& [number, fail] : unanswered) later([fail = fail](State&) { fail(replacedError()); });
    for (auto const& payment : payments) refuse(payment, replacedError());
    for (std::size_t i = 0; i < restoreCount; ++i) refuseRestore();
    if (!backend) return;
    backend->setListener(inbox.get());
    synchronize();
}

void SKPaymentQueue::State::refuseRestore() const {
    later([](State& state) {
        state.receive([](State& receiver) {
            receiver.call([&](auto& observer) {
                observer.paymentQueueRestoreCompletedTransactionsFailed(receiver.queue, replacedError());
            });
        });
    });
}

} // namespace trelundo
