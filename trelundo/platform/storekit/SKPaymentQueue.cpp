#include "trelundo/platform/storekit/SKPaymentQueue.h"

#include "trelundo/platform/foundation/FatalError.h"
#include "trelundo/platform/foundation/Memory.h"
#include "trelundo/platform/storekit/internal/SKPaymentQueueState.h"

namespace trelundo {

namespace {

constexpr int largestQuantity = 10;

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
    requireMemory([&] { state_->add(std::move(observer)); });
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
    requireMemory(
        [&] { state_->performOrHold([fields = payment->fields()](State& state) { state.submit(fields); }); });
}

void SKPaymentQueue::restoreCompletedTransactions(std::optional<std::string> applicationUsername) {
    requireMemory([&] {
        state_->performOrHold([applicationUsername](State& state) {
            state.restoresWaiting.push_back(applicationUsername);
            state.startNextRestore();
        });
    });
}

void SKPaymentQueue::finishTransaction(Ref<SKPaymentTransaction> const& transaction) {
    requireMemory([&] { state_->finish(transaction); });
}

SKPaymentTransactions const& SKPaymentQueue::transactions() const {
    state_->compact();
    return state_->pending;
}

std::string SKPaymentQueue::storefrontCountryCode() const {
    return state_->backend ? state_->backend->storefront() : std::string{};
}

void SKPaymentQueue::setBackend(StoreBackend* backend) {
    requireMemory([&] { state_->replaceBackend(backend); });
}

StoreBackend* SKPaymentQueue::backend() const { return state_->backend; }

void SKPaymentQueue::setMonitor(SKPaymentQueueMonitor* monitor) { state_->monitor = monitor; }

} // namespace trelundo
