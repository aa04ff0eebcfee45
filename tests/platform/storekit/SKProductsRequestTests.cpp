#include "StoreTestSupport.h"

#include "trelundo/platform/storekit/SKProductsRequest.h"

#include <thread>

namespace trelundo {
namespace {

class Delegate : public NSObject, public SKProductsRequestDelegate {
public:
    void productsRequestDidReceive(SKProductsRequest& request, SKProductsResponse const& response) override {
        lines.push_back("received " + std::to_string(response.products().size()) + ", invalid " +
                        std::to_string(response.invalidProductIdentifiers().size()));
        if (onReceive) onReceive(request);
    }
    void requestDidFinish(SKRequest&) override { lines.push_back("finished"); }
    void requestDidFailWithError(SKRequest&, Ref<NSError> const& error) override {
        lines.push_back("failed " + std::to_string(error->code()));
    }

    Lines lines;
    std::function<void(SKProductsRequest&)> onReceive;
};

class ProductsRequestTest : public StoreTest {
protected:
    ProductsRequestTest() {
        SKPaymentQueue::defaultQueue().setBackend(&backend);
        request->setDelegate(delegate);
    }
    ~ProductsRequestTest() override { SKPaymentQueue::defaultQueue().setBackend(nullptr); }

    static StoreBackend::ProductsResult known() {
        return {.products = {make<SKProduct>(SKProduct::Fields{.productIdentifier = "a"})},
                .invalidIdentifiers = {"b"}};
    }

    FakeBackend backend;
    Ref<Delegate> delegate = make<Delegate>();
    Ref<SKProductsRequest> request = make<SKProductsRequest>(std::set<std::string>{"a", "b"});
};

TEST_F(ProductsRequestTest, AnswersOnceOnTheMainQueue) {
    request->start();
    std::thread{[&] { backend.answers.at(0)(known()); }}.join();
    backend.answers.at(0)(known());
    EXPECT_EQ(delegate->lines, Lines{});
    drain();
    EXPECT_EQ(delegate->lines, (Lines{"received 1, invalid 1", "finished"}));
}

TEST_F(ProductsRequestTest, FailsInsteadOfFinishing) {
    request->start();
    backend.answers.at(0)({.error = makeStoreError(SKErrorCode::cloudServiceNetworkConnectionFailed)});
    drain();
    EXPECT_EQ(delegate->lines, Lines{"failed 7"});

    SKPaymentQueue::defaultQueue().setBackend(nullptr);
    EXPECT_FALSE(SKPaymentQueue::canMakePayments());
    request->start();
    EXPECT_EQ(delegate->lines, Lines{"failed 7"});
    drain();
    EXPECT_EQ(delegate->lines, (Lines{"failed 7", "failed 0"}));
}

TEST_F(ProductsRequestTest, IsSilentAfterCancelAndRelease) {
    request->start();
    backend.answers.at(0)(known());
    request->cancel();
    drain();
    auto released = make<SKProductsRequest>(std::set<std::string>{"a"});
    released->setDelegate(delegate);
    released->start();
    backend.answers.at(1)(known());
    released = nullptr;
    drain();
    EXPECT_EQ(delegate->lines, Lines{});

    delegate->onReceive = [](SKProductsRequest& each) { each.cancel(); };
    request->start();
    backend.answers.at(2)(known());
    drain();
    EXPECT_EQ(delegate->lines, Lines{"received 1, invalid 1"}) << "cancelled before the finish";
}

TEST(StoreErrorTest, CancellingReadsLikeAConnectionFailure) {
    EXPECT_EQ(makeStoreError(2)->localizedDescription(), makeStoreError(0)->localizedDescription());
    EXPECT_EQ(makeStoreError(SKErrorCode::invalidSignature)->code(), 12);
    EXPECT_EQ(makeStoreError(21)->userInfo().size(), 1U);
    EXPECT_TRUE(makeStoreError(22)->userInfo().empty());
    EXPECT_TRUE(makeStoreError(-2)->userInfo().empty());
}

} // namespace
} // namespace trelundo
