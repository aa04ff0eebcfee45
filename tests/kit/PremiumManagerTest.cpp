#include "trelundo/kit/store/PremiumManager.h"
#include "tests/support/FakeStore.h"
#include "tests/support/Products.h"
#include "trelundo/platform/storekit/SKError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdexcept>
#include <thread>

namespace trelundo::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A host that writes down everything it hears.
class RecordingHost : public NSObject, public PremiumManagerDelegate {
public:
    std::optional<std::string> applicationUsername() const override { return "account-7"; }
    void logEvent(std::string const& name) override { heard.push_back(name); }
    void logEvent(std::string const& name, EventParameters const& parameters) override {
        heard.push_back(name);
        for (auto const& [key, value] : parameters)
            heard.back() += "|" + key + "=" + value.value_or("(none)");
    }
    void premiumManagerDidLoadProducts(Products const& products) override {
        heard.push_back("loaded");
        for (auto const& product : products) heard.back() += " " + product->productIdentifier();
    }
    bool paymentQueueShouldAddStorePayment(SKPaymentQueue&, Ref<SKPayment> const&,
                                           Ref<SKProduct> const&) override {
        return true;
    }

    std::vector<std::string> heard;
};

class PremiumManagerTest : public testing::Test {
protected:
    PremiumManagerTest() {
        manager->setDelegate(host);
        SKPaymentQueue::defaultQueue().addTransactionObserver(manager);
        RunLoop::main().runUntilIdle();
        for (auto const* known : {"a", "b", "c"}) store.catalogue[known] = makeProduct(known, "1", week);
    }

    void load(std::vector<std::string> identifiers) {
        manager->start(std::move(identifiers));
        RunLoop::main().runUntilIdle();
    }

    /// A purchase whose outcome is appended to `outcomes`, with the number of those finished by then.
    bool buy(Ref<SKPayment> payment) {
        PremiumManager::Purchase purchase;
        purchase.payment = std::move(payment);
        purchase.completion = [this](bool success, auto const&, bool deferred, Ref<NSError> const& error) {
            outcomes.push_back(std::string{success ? "success" : "failure"} + (deferred ? " deferred" : "") +
                               (error ? " " + std::to_string(error->code()) : "") + ", " +
                               std::to_string(store.finished.size()) + " finished");
        };
        return manager->purchase(std::move(purchase));
    }

    FakeStore store;
    Ref<RecordingHost> host = make<RecordingHost>();
    Ref<PremiumManager> manager = make<PremiumManager>();
    std::vector<std::string> outcomes;
};

TEST_F(PremiumManagerTest, LoadsOneCatalogueInTheHostsOrder) {
    manager->start({"b", "a"});
    load({"c"});
    EXPECT_THAT(host->heard, ElementsAre("loaded b a")) << "a start while loading is ignored";
    EXPECT_EQ(manager->state(), PremiumManagerState::loaded);
    manager->start({"a"});
    EXPECT_THAT(manager->productIdentifiers(), ElementsAre("b", "a")) << "a loaded catalogue is final";
    EXPECT_EQ(manager->state(), PremiumManagerState::loaded);
}

TEST_F(PremiumManagerTest, DeliversAnIncompleteCatalogueAsFailed) {
    load({"c", "unknown", "a"});
    load({"a", "a"});
    load({});
    EXPECT_THAT(host->heard, ElementsAre("loaded c a", "loaded a", "loaded"));
    EXPECT_EQ(manager->state(), PremiumManagerState::failed);
    load({"a"});
    EXPECT_EQ(manager->state(), PremiumManagerState::loaded) << "a failed load may be started again";
}

TEST_F(PremiumManagerTest, KeepsUnlistedProductsInTheirPlaces) {
    load({"b", "a"});
    auto request = manager->productsRequest();
    Products answer;
    for (auto const* identifier : {"a", "b", "x", "a", "b"})
        answer.push_back(makeProduct(identifier, "1", week));
    manager->productsRequestDidReceive(*request, SKProductsResponse{answer, {}});
    manager->requestDidFinish(*request);
    EXPECT_EQ(host->heard.back(), "loaded b a x b a");
}

TEST_F(PremiumManagerTest, ReportsAFailedRequestAsAnEventOnly) {
    store.loadError = make<NSError>("NSURLErrorDomain", -1009);
    load({"a"});
    EXPECT_EQ(manager->state(), PremiumManagerState::failed);
    EXPECT_THAT(host->heard, ElementsAre("Error|Class=PremiumManager|Error=" +
                                         store.loadError->description() + "|Function=request"));
}

TEST_F(PremiumManagerTest, AnAbsentPaymentCountsAsStarted) {
    EXPECT_TRUE(buy(nullptr));
    EXPECT_THAT(host->heard, IsEmpty());
    EXPECT_THAT(outcomes, IsEmpty());
}

TEST_F(PremiumManagerTest, LogsFailuresButNotCancellations) {
    auto const error = makeStoreError(5);
    for (auto const& failure : {makeStoreError(2), makeStoreError(-2), error}) {
        buy(make<SKPayment>(*monthly()));
        host->heard.clear();
        store.report(SKPaymentTransactionState::failed, failure);
        EXPECT_EQ(host->heard.size(), failure == error ? 1U : 0U);
    }
    EXPECT_EQ(host->heard.back(),
              "Error|Class=PremiumManager|Error=" + error->description() + "|Function=updatedTransactions");
    EXPECT_THAT(store.finished, ElementsAre("t1", "t2", "t3"));
    EXPECT_THAT(outcomes,
                ElementsAre("failure 2, 1 finished", "failure -2, 2 finished", "failure 5, 3 finished"));
}

TEST_F(PremiumManagerTest, WithoutDelegateAnswersNoToPromotions) {
    auto const payment = make<SKPayment>(*monthly());
    auto& queue = SKPaymentQueue::defaultQueue();
    EXPECT_TRUE(manager->paymentQueueShouldAddStorePayment(queue, payment, monthly()));
    manager->setDelegate(nullptr);
    EXPECT_FALSE(manager->paymentQueueShouldAddStorePayment(queue, payment, monthly()));
    EXPECT_EQ(manager->applicationUsername(), std::nullopt);
}

TEST_F(PremiumManagerTest, APurchaseInAnEmptyRestoreDoesNotSwallowItsEnd) {
    int ends = 0;
    manager->restore("menu", [&](bool success, auto const&) { ends += success ? 1 : 100; });
    buy(make<SKPayment>(*monthly()));
    store.tell(
        {{.key = "t", .payment = store.payments.back(), .state = SKPaymentTransactionState::purchased}});
    store.listener->restoreFinished();
    RunLoop::main().runUntilIdle();
    EXPECT_EQ(ends, 1);
    EXPECT_THAT(outcomes, ElementsAre("success, 1 finished"));
}

TEST_F(PremiumManagerTest, AnExceptionOfTheHostKeepsNothingFromBeingFinished) {
    int restores = 0;
    PremiumManager::Purchase purchase;
    purchase.payment = make<SKPayment>(*monthly());
    purchase.completion = [](bool, auto const&, bool, auto const&) { throw std::runtime_error("host"); };
    manager->purchase(purchase);
    manager->restore("menu", [&](bool, auto const&) { ++restores; });
    using State = SKPaymentTransactionState;
    store.tell(
        {FakeStore::transaction("1", State::failed, 5), FakeStore::transaction("2", State::purchased)});
    store.tell({FakeStore::transaction("3", State::restored)});
    EXPECT_THROW(RunLoop::main().runUntilIdle(), std::runtime_error);
    store.listener->restoreFinished();
    RunLoop::main().runUntilIdle();
    EXPECT_THAT(store.finished, ElementsAre("1", "2", "3"));
    EXPECT_EQ(restores, 1);
}

TEST_F(PremiumManagerTest, FailsALoadWhoseStoreIsReplaced) {
    store.catalogue.clear();
    manager->start({"a"});
    FakeStore const next;
    RunLoop::main().runUntilIdle();
    EXPECT_EQ(manager->state(), PremiumManagerState::failed) << "and may be started again";
}

/// In a process where nobody has asked for the shared manager yet.
TEST(PremiumManagerDeathTest, FirstAccessFromAnotherThreadLeavesTheQueueToTheMainThread) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    auto const accessFromAThread = [] {
        FakeStore const store;
        std::thread{[] { PremiumManager::sharedInstance(); }}.join();
        bool const isUntouched = store.calls.empty();
        RunLoop::main().runUntilIdle();
        std::_Exit(isUntouched && store.calls == std::vector<std::string>{"synchronize"} ? 0 : 1);
    };
    EXPECT_EXIT(accessFromAThread(), testing::ExitedWithCode(0), "");
}

TEST(PriceTextTest, IsCutNeverRoundedUp) {
    auto const text = [](char const* price, int div, char const* locale = "en_US@currency=USD") {
        return PremiumManager::price(
            {.price = *Decimal::parse(price), .priceLocale = Locale{locale}, .div = div});
    };
    EXPECT_EQ(text("59.99", 12), "$4.99");
    EXPECT_EQ(text("59.99", 52), "$1.15");
    EXPECT_EQ(text("9.999", 1), "$9.99");
    EXPECT_EQ(text("500", 12, "ja_JP@currency=JPY"), "￥41.66");
    EXPECT_EQ(text("500", 1, "ja_JP@currency=JPY"), "￥500");
}

TEST(PeriodTextTest, TakesTheDigitAsPlaceholder) {
    Locale::setPreferredLanguages({"en"});
    auto const text = [](SKProductPeriodUnit unit, int count, bool capitalize = false) {
        return PremiumManager::period(
            {.unit = unit, .numberOfPeriods = count, .capitalizeFirstLetter = capitalize});
    };
    EXPECT_EQ(text(SKProductPeriodUnit::month, 12), "12 months");
    EXPECT_EQ(text(SKProductPeriodUnit::day, 0), "0 days");
    EXPECT_EQ(text(SKProductPeriodUnit::year, -1), "-1 years");
    EXPECT_EQ(text(SKProductPeriodUnit::week, 1, true), "1 Week");
    EXPECT_EQ(text(static_cast<SKProductPeriodUnit>(9), 2, true), "");
}

} // namespace
} // namespace trelundo::test
