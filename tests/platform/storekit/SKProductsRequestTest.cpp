#include "tests/platform/storekit/StoreTestSupport.h"

#include "tests/support/FakeStore.h"
#include "trelundo/platform/storekit/SKProductsRequest.h"

#include <stdexcept>
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
    ProductsRequestTest() { request->setDelegate(delegate); }

    static StoreBackend::ProductsResult known() {
        return {.products = {make<SKProduct>(SKProduct::Fields{.productIdentifier = "a"})},
                .invalidIdentifiers = {"b"}};
    }

    test::FakeStore store;
    Ref<Delegate> delegate = make<Delegate>();
    Ref<SKProductsRequest> request = make<SKProductsRequest>(std::set<std::string>{"a", "b"});
};

TEST_F(ProductsRequestTest, AnswersOnceOnTheMainQueue) {
    request->start();
    std::thread{[&] { store.answers.at(0)(known()); }}.join();
    store.answers.at(0)(known());
    EXPECT_EQ(delegate->lines, Lines{});
    drain();
    EXPECT_EQ(delegate->lines, (Lines{"received 1, invalid 1", "finished"}));
}

TEST_F(ProductsRequestTest, FailsInsteadOfFinishing) {
    request->start();
    store.answers.at(0)({.error = makeStoreError(SKErrorCode::cloudServiceNetworkConnectionFailed)});
    drain();
    EXPECT_EQ(delegate->lines, Lines{"failed 7"});

    SKPaymentQueue::defaultQueue().setBackend(nullptr);
    EXPECT_FALSE(SKPaymentQueue::canMakePayments());
    request->start();
    EXPECT_EQ(delegate->lines, Lines{"failed 7"});
    drain();
    EXPECT_EQ(delegate->lines, (Lines{"failed 7", "failed 0"}));
}

TEST_F(ProductsRequestTest, FailsWhenTheStoreIsReplaced) {
    request->start();
    test::FakeStore const next;
    store.answers.at(0)(known());
    drain();
    EXPECT_EQ(delegate->lines, Lines{"failed 0"}) << "once";
    request->start();
    next.answers.at(0)(known());
    delegate->onReceive = [](SKProductsRequest&) { throw std::runtime_error("host"); };
    EXPECT_THROW(drain(), std::runtime_error);
    EXPECT_EQ(delegate->lines, (Lines{"failed 0", "received 1, invalid 1", "finished"}));
}

TEST_F(ProductsRequestTest, IsSilentAfterCancelAndRelease) {
    request->start();
    store.answers.at(0)(known());
    request->cancel();
    drain();
    auto released = make<SKProductsRequest>(std::set<std::string>{"a"});
    released->setDelegate(delegate);
    released->start();
    store.answers.at(1)(known());
    released = nullptr;
    drain();
    EXPECT_EQ(delegate->lines, Lines{});

    delegate->onReceive = [](SKProductsRequest& each) { each.cancel(); };
    request->start();
    store.answers.at(2)(known());
    drain();
    EXPECT_EQ(delegate->lines, Lines{"received 1, invalid 1"}) << "cancelled before the finish";
}

TEST(StoreErrorTest, DescribesTheCodesThatItKnows) {
    for (auto const& [code, entries] : {std::pair{0, 1U}, {21, 1U}, {22, 0U}, {-2, 0U}})
        EXPECT_EQ(makeStoreError(code)->userInfo().size(), entries) << code;
}

} // namespace
} // namespace trelundo
