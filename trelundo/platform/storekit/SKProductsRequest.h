#pragma once

#include "trelundo/platform/foundation/NSError.h"
#include "trelundo/platform/foundation/Weak.h"
#include "trelundo/platform/storekit/SKProduct.h"

#include <set>
#include <string>
#include <vector>

namespace trelundo {

class SKRequest;

/// Hears the end of a request: exactly one of finish and fail per start, none after cancel.
class SKRequestDelegate {
public:
    virtual ~SKRequestDelegate() = default;
    virtual void requestDidFinish(SKRequest& /*request*/) {}
    virtual void requestDidFailWithError(SKRequest& /*request*/, Ref<NSError> const& /*error*/) {}
};

class SKRequest : public NSObject {
public:
    Ref<SKRequestDelegate> delegate() const { return delegate_.lock(); }
    void setDelegate(Weak<SKRequestDelegate> delegate) { delegate_ = std::move(delegate); }
    /// Asynchronous: no callback comes inside the call.
    virtual void start() = 0;
    virtual void cancel() = 0;

private:
    Weak<SKRequestDelegate> delegate_;
};

/// The known products, each once, in no particular order, and the identifiers that the store does not know.
class SKProductsResponse : public NSObject {
public:
    SKProductsResponse(std::vector<Ref<SKProduct>> products, std::vector<std::string> invalid)
        : products_(std::move(products))
        , invalid_(std::move(invalid)) {}

    std::vector<Ref<SKProduct>> const& products() const { return products_; }
    std::vector<std::string> const& invalidProductIdentifiers() const { return invalid_; }

private:
    std::vector<Ref<SKProduct>> products_;
    std::vector<std::string> invalid_;
};

class SKProductsRequest;

class SKProductsRequestDelegate : public SKRequestDelegate {
public:
    /// Comes before requestDidFinish().
    virtual void productsRequestDidReceive(SKProductsRequest& request,
                                           SKProductsResponse const& response) = 0;
};

/// Asks the store for products. The caller holds it until it ends: a released request is cancelled and
/// silent.
class SKProductsRequest : public SKRequest {
public:
    explicit SKProductsRequest(std::set<std::string> productIdentifiers);
    ~SKProductsRequest() override;

    std::set<std::string> const& productIdentifiers() const { return identifiers_; }
    void start() override;
    void cancel() override;

private:
    void ask();
    void end(int generation, Ref<SKProductsResponse> const& response, Ref<NSError> const& error);

    std::set<std::string> identifiers_;
    int generation_ = 0; // an answer of an older start, or after cancel, is dropped
};

} // namespace trelundo
