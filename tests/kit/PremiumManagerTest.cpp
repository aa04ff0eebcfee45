#include "store/PremiumManager.h"
#include "tests/support/FakeStore.h"
#include "tests/support/Products.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

namespace trelundo::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string line(std::string const& name, EventParameters const& parameters) {
    std::string text = name;
    for (auto const& [key, value] : parameters) text += "|" + key + "=" + value.value_or("(none)");
    return text;
}

/// A host that writes down everything it hears.
class RecordingHost : public NSObject, public PremiumManagerDelegate {
public:
    std::optional<std::string> applicationUsername() const override { return "account-7"; }
    void logEvent(std::string const& name) override { heard.push_back(name); }
    void logEvent(std::string const& name, EventParameters const& parameters) override {
        heard.push_back(line(name, parameters));
    }
    void premiumManagerDidLoadProducts(Products const& products) override {
        std::string text = "loaded";
        for (auto const& product : products) text += " " + product->productIdentifier();
        heard.push_back(text);
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
    }

    void load(std::vector<std::string> identifiers) {
        manager->start(std::move(identifiers));
        RunLoop::main().runUntilIdle();
    }

    /// A purchase whose outcome is appended to `outcomes`.
    bool buy(Ref<SKPayment> payment) {
        return manager->purchase({.payment = std::move(payment),
                                  .source = "menu",
                                  .screen = "PremiumViewController",
                                  .premiumId = "spring",
                                  .abTest = "a",
                                  .completion = [this](bool success, Ref<SKPayment> const&, bool deferred,
                                                       Ref<NSError> const& error) {
                                      outcomes.push_back(std::string{success ? "success" : "failure"} +
                                                         (deferred ? " deferred" : "") +
                                                         (error ? " " + std::to_string(error->code()) : ""));
                                  }});
    }
    void restore() {
        manager->restore("Buy", [this](bool success, Ref<NSError> const& error) {
            outcomes.push_back(std::string{success ? "restored" : "not restored"} +
                               (error ? " " + std::to_string(error->code()) : ""));
        });
    }

    FakeStore store;
    Ref<RecordingHost> host = make<RecordingHost>();
    Ref<PremiumManager> manager = make<PremiumManager>();
    std::vector<std::string> outcomes;
};

TEST_F(PremiumManagerTest, SortsIntoTheHostsOrder) {
    store.catalogue = {{"a", makeProduct("a", "1", week)}, {"b", makeProduct("b", "2", week)}};
    load({"b", "a"});
    EXPECT_THAT(host->heard, ElementsAre("loaded b a"));
    EXPECT_EQ(manager->state(), PremiumManagerState::loaded);

    manager->start({"a"});
    EXPECT_THAT(manager->productIdentifiers(), ElementsAre("b", "a")) << "a loaded catalogue is final";
}

TEST_F(PremiumManagerTest, DeliversAnIncompleteCatalogueAsFailed) {
    store.catalogue = {{"a", makeProduct("a", "1", week)}, {"c", makeProduct("c", "2", week)}};
    load({"c", "b", "a"});
    load({"a", "a"});
    load({});
    EXPECT_THAT(host->heard, ElementsAre("loaded c a", "loaded a", "loaded"));
    EXPECT_EQ(manager->state(), PremiumManagerState::failed);
    load({"a"});
    EXPECT_EQ(manager->state(), PremiumManagerState::loaded) << "a failed load may be started again";
}

TEST_F(PremiumManagerTest, IgnoresAStartWhileLoading) {
    manager->start({"a"});
    manager->start({"b"});
    EXPECT_THAT(manager->productIdentifiers(), ElementsAre("a"));
    EXPECT_EQ(manager->state(), PremiumManagerState::loading);
}

TEST_F(PremiumManagerTest, KeepsUnlistedProductsInTheirPlaces) {
    load({"b", "a"});
    host->heard.clear();
    auto request = manager->productsRequest();
    auto product = [](char const* identifier) { return makeProduct(identifier, "1", week); };
    manager->productsRequestDidReceive(
        *request,
        SKProductsResponse{{product("a"), product("b"), product("x"), product("a"), product("b")}, {}});
    manager->requestDidFinish(*request);
    EXPECT_THAT(host->heard, ElementsAre("loaded b a x b a"));
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

TEST_F(PremiumManagerTest, BuysAndFinishesBeforeItTells) {
    auto payment = make<SKMutablePayment>(*yearly());
    payment->setPaymentDiscount(make<SKPaymentDiscount>(SKPaymentDiscount::Fields{.identifier = "half"}));
    EXPECT_TRUE(buy(payment));
    EXPECT_THAT(host->heard, ElementsAre("Buy|AB Test=a|Premium Id=spring|Product=yearly|Promotion=half|"
                                         "Screen=PremiumViewController|Source=menu"));
    store.report(SKPaymentTransactionState::purchasing);
    EXPECT_THAT(outcomes, IsEmpty());
    store.report(SKPaymentTransactionState::purchased);
    EXPECT_THAT(store.finished, ElementsAre("t1"));
    EXPECT_THAT(outcomes, ElementsAre("success"));
}

TEST_F(PremiumManagerTest, AnEventWithoutDiscountHasAPromotionWithoutValue) {
    buy(make<SKPayment>(*monthly()));
    EXPECT_THAT(host->heard, ElementsAre("Buy|AB Test=a|Premium Id=spring|Product=monthly|Promotion=(none)|"
                                         "Screen=PremiumViewController|Source=menu"));
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
    EXPECT_THAT(outcomes, ElementsAre("failure 2", "failure -2", "failure 5"));
}

TEST_F(PremiumManagerTest, ADeferredPurchaseIsNotFinishedAndReportsAgain) {
    buy(make<SKPayment>(*monthly()));
    store.report(SKPaymentTransactionState::deferred);
    EXPECT_THAT(store.finished, IsEmpty());
    EXPECT_EQ(host->heard.back(), "Purchases Deferred");
    store.report(SKPaymentTransactionState::purchased);
    EXPECT_THAT(outcomes, ElementsAre("failure deferred", "success"));
}

TEST_F(PremiumManagerTest, RefusesWhenTheDeviceMayNotPay) {
    store.mayPay = false;
    EXPECT_FALSE(buy(make<SKPayment>(*monthly())));
    EXPECT_THAT(outcomes, ElementsAre("failure"));
    EXPECT_THAT(store.payments, IsEmpty());
    EXPECT_THAT(host->heard,
                ElementsAre("Error|Can Make Payments=false|Class=PremiumManager|Function=purchase|"
                            "Product=monthly"));
}

TEST_F(PremiumManagerTest, ThreeRestoredTransactionsGiveOneReport) {
    restore();
    store.deliverRestored(3);
    EXPECT_THAT(store.finished, ElementsAre("r0", "r1", "r2"));
    EXPECT_THAT(host->heard, ElementsAre("Restore Purchuses|Source=Buy", "Purchases Restored"));
    EXPECT_THAT(outcomes, ElementsAre("restored"));
}

TEST_F(PremiumManagerTest, RestoringNothingOrFailingReportsOnce) {
    restore();
    store.deliverRestored(0);
    restore();
    store.failRestore(makeStoreError(2));
    restore();
    auto const error = makeStoreError(0);
    store.failRestore(error);
    EXPECT_THAT(outcomes, ElementsAre("restored", "not restored 2", "not restored 0"));
    EXPECT_EQ(host->heard.back(),
              "Error|Class=PremiumManager|Error=" + error->description() + "|Function=SKPaymentQueue");
}

TEST_F(PremiumManagerTest, FinishesAnInterruptedPurchaseWithoutCompletion) {
    store.deliver({{.key = "old",
                    .payment = {.productIdentifier = "yearly"},
                    .state = SKPaymentTransactionState::purchased}});
    EXPECT_THAT(store.finished, ElementsAre("old"));
}

TEST_F(PremiumManagerTest, WithoutDelegateAnswersNoToPromotions) {
    auto const payment = make<SKPayment>(*monthly());
    auto& queue = SKPaymentQueue::defaultQueue();
    EXPECT_TRUE(manager->paymentQueueShouldAddStorePayment(queue, payment, monthly()));
    manager->setDelegate(nullptr);
    EXPECT_FALSE(manager->paymentQueueShouldAddStorePayment(queue, payment, monthly()));
    EXPECT_EQ(manager->applicationUsername(), std::nullopt);
}

TEST(PremiumManagerState, ComesFromRawValues) {
    EXPECT_EQ(premiumManagerState(3), PremiumManagerState::failed);
    EXPECT_EQ(premiumManagerState(4), std::nullopt);
    EXPECT_EQ(premiumManagerState(-1), std::nullopt);
}

std::string priceText(char const* price, int div, char const* locale = "en_US@currency=USD") {
    return PremiumManager::price(
        {.price = *Decimal::parse(price), .priceLocale = Locale{locale}, .div = div});
}

TEST(PriceText, IsCutNeverRoundedUp) {
    EXPECT_EQ(priceText("59.99", 12), "$4.99");
    EXPECT_EQ(priceText("59.99", 52), "$1.15");
    EXPECT_EQ(priceText("9.999", 1), "$9.99");
    EXPECT_EQ(priceText("500", 12, "ja_JP@currency=JPY"), "￥41.66");
    EXPECT_EQ(priceText("500", 1, "ja_JP@currency=JPY"), "￥500");
}

std::string periodText(SKProductPeriodUnit unit, int count, bool capitalize = false) {
    return PremiumManager::period(
        {.unit = unit, .numberOfPeriods = count, .capitalizeFirstLetter = capitalize});
}

TEST(PeriodText, TakesTheDigitAsPlaceholder) {
    Locale::setPreferredLanguages({"en"});
    EXPECT_EQ(periodText(SKProductPeriodUnit::month, 12), "12 months");
    EXPECT_EQ(periodText(SKProductPeriodUnit::day, 0), "0 days");
    EXPECT_EQ(periodText(SKProductPeriodUnit::year, -1), "-1 years");
    EXPECT_EQ(periodText(SKProductPeriodUnit::week, 1, true), "1 Week");
    EXPECT_EQ(periodText(static_cast<SKProductPeriodUnit>(9), 2, true), "");
}

} // namespace
} // namespace trelundo::test
