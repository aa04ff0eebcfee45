#include "trelundo/platform/storekit/SKProductsRequest.h"

#include "trelundo/platform/foundation/DispatchQueue.h"
#include "trelundo/platform/foundation/FirstException.h"
#include "trelundo/platform/foundation/Memory.h"
#include "trelundo/platform/storekit/SKError.h"
#include "trelundo/platform/storekit/internal/SKPaymentQueueState.h"

namespace trelundo {

SKProductsRequest::SKProductsRequest(std::set<std::string> productIdentifiers)
    : identifiers_(std::move(productIdentifiers)) {}

SKProductsRequest::~SKProductsRequest() = default;

void SKProductsRequest::start() {
    requireMemory([this] { ask(); });
}

void SKProductsRequest::ask() {
    auto& queue = *SKPaymentQueue::defaultQueue().state_;
    auto const number = ++queue.requestCount;
    auto const request = Weak<SKProductsRequest>(this);
    auto const generation = ++generation_;
    auto answer = [=](StoreBackend::ProductsResult const& result) {
        auto response = make<SKProductsResponse>(result.products, result.invalidIdentifiers);
        DispatchQueue::main().async([=, error = result.error] {
            SKPaymentQueue::defaultQueue().state_->requests.erase(number);
            if (auto const held = request.lock()) held->end(generation, response, error);
        });
    };
    if (!queue.backend) return answer({.error = makeStoreError(SKErrorCode::unknown)});
    queue.requests[number] = [=](Ref<NSError> const& error) {
        if (auto const held = request.lock()) held->end(generation, nullptr, error);
    };
    queue.backend->loadProducts(identifiers_, std::move(answer));
}

void SKProductsRequest::cancel() { ++generation_; }

void SKProductsRequest::end(int generation, Ref<SKProductsResponse> const& response,
                            Ref<NSError> const& error) {
    if (generation != generation_) return;
    auto const ended = ++generation_; // a second answer finds nobody waiting
    if (error) {
        if (auto const heard = delegate()) heard->requestDidFailWithError(*this, error);
        return;
    }
    FirstException failures;
    if (auto const heard = cast<SKProductsRequestDelegate>(delegate()))
        failures.run([&] { heard->productsRequestDidReceive(*this, *response); });
    // The delegate may have cancelled or started again while it received.
    if (auto const heard = delegate(); heard && ended == generation_)
        failures.run([&] { heard->requestDidFinish(*this); });
    failures.rethrow();
}

} // namespace trelundo
