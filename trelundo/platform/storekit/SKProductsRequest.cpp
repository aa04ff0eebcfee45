#include "trelundo/platform/storekit/SKProductsRequest.h"

#include "trelundo/platform/foundation/DispatchQueue.h"
#include "trelundo/platform/storekit/SKError.h"
#include "trelundo/platform/storekit/SKPaymentQueue.h"
#include "trelundo/platform/storekit/StoreBackend.h"

namespace trelundo {

SKProductsRequest::SKProductsRequest(std::set<std::string> productIdentifiers)
    : identifiers_(std::move(productIdentifiers)) {}

SKProductsRequest::~SKProductsRequest() = default;

void SKProductsRequest::start() {
    auto answer = [request = Weak<SKProductsRequest>(this),
                   generation = ++generation_](StoreBackend::ProductsResult const& result) {
        auto response = make<SKProductsResponse>(result.products, result.invalidIdentifiers);
        DispatchQueue::main().async([request, generation, response, error = result.error] {
            if (auto const held = request.lock()) held->end(generation, response, error);
        });
    };
    if (auto* backend = SKPaymentQueue::defaultQueue().backend()) {
        backend->loadProducts(identifiers_, std::move(answer));
    } else {
        answer({.products = {}, .invalidIdentifiers = {}, .error = makeStoreError(SKErrorCode::unknown)});
    }
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
    if (auto const heard = cast<SKProductsRequestDelegate>(delegate()))
        heard->productsRequestDidReceive(*this, *response);
    // The delegate may have cancelled or started again while it received.
    if (ended != generation_) return;
    if (auto const heard = delegate()) heard->requestDidFinish(*this);
}

} // namespace trelundo
