#include "trelundo/platform/storekit/SKPaymentQueue.h"

#include "trelundo/platform/foundation/FatalError.h"
#include "trelundo/platform/foundation/Log.h"
#include "trelundo/platform/storekit/SKError.h"
#include "trelundo/platform/storekit/internal/SKPaymentQueueState.h"

#include <algorithm>

namespace trelundo {

namespace {

constexpr int largestQuantity = 10;

/// Why a transaction cannot be finished now; empty: it can.
std::string refusal(SKPaymentTransactionState state, bool isFinished) {
    if (isFinished) return "it is finished already";
    if (state == SKPaymentTransactionState::purchasing) return "it is still purchasing";
    if (state == SKPaymentTransactionState::deferred) return "it waits for approval";
    return {};
}

} // namespace

SKPaymentQueue::SKPaymentQueue()
    : state_(std::make_unique<State>(*this)) {}

SKPaymentQueue::~SKPaymentQueue() {
    if (state_->backend) state_->backend->setListener(nullptr);
}

SKPaymentQueue& SKPaymentQueue::defaultQueue() {
    static auto const& queue =
        *new Ref<SKPaymentQueue>{make<SKPaymentQueue>()}; // lives as long as the process
    return *queue;
}

bool SKPaymentQueue::canMakePayments() {
    auto const* backend = defaultQueue().backend();
    return backend && backend->canMakePayments();
}

void SKPaymentQueue::addTransactionObserver(Weak<SKPaymentTransactionObserver> observer) {
    state_->add(std::move(observer));
}

void SKPaymentQueue::removeTransactionObserver(NSObject const& observer) {
    std::erase_if(state_->observers,
                  [&](State::Observer const& each) { return each.observer.refersTo(observer); });
}

void SKPaymentQueue::add(Ref<SKPayment> const& payment) {
    if (!payment || payment->productIdentifier().empty()) fatalError("A payment needs a product identifier");
    if (payment->quantity() < 1 || payment->quantity() > largestQuantity)
        fatalError("The quantity of a payment must be between 1 and 10");
    if (state_->monitor) state_->monitor->paymentAdded(*payment);
    state_->performOrHold([fields = payment->fields()](State& state) { state.submit(fields); });
}

void SKPaymentQueue::restoreCompletedTransactions(std::optional<std::string> applicationUsername) {
    state_->performOrHold([applicationUsername](State& state) {
        state.restoresWaiting.push_back(applicationUsername);
        state.startNextRestore();
    });
}

void SKPaymentQueue::finishTransaction(Ref<SKPaymentTransaction> const& transaction) {
    state_->finish(transaction);
}

SKPaymentTransactions const& SKPaymentQueue::transactions() const { return state_->pending; }

std::string SKPaymentQueue::storefrontCountryCode() const {
    return state_->backend ? state_->backend->storefront() : std::string{};
}

void SKPaymentQueue::setBackend(StoreBackend* backend) { state_->replaceBackend(backend); }

StoreBackend* SKPaymentQueue::backend() const { return state_->backend; }

void SKPaymentQueue::setMonitor(SKPaymentQueueMonitor* monitor) { state_->monitor = monitor; }

// State

void SKPaymentQueue::State::performOrHold(Event operation) {
    if (hasObservers()) {
        operation(*this);
    } else {
        heldOperations.push_back(std::move(operation));
    }
}

void SKPaymentQueue::State::submit(SKPayment::Fields const& payment) {
    if (backend) return backend->addPayment(payment);
    StoreTransaction refused{.key = "local-" + std::to_string(++localCount),
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
    auto const reason = refusal(transaction->transactionState(), entry.isFinished);
    if (!reason.empty()) return logWarning("Transaction " + key->second + " was not finished: " + reason);
    if (backend && !backend->finish(key->second))
        return logWarning("Transaction " + key->second + " was not finished: the store could not record it");
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
