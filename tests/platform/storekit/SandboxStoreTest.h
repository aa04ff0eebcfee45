#pragma once

#include "StoreTestSupport.h"

#include "trelundo/platform/storekit/sandbox/SandboxStore.h"

#include <memory>

namespace trelundo {

inline constexpr char const* sandboxProducts = R"("products": [
    {"productID": "coins", "displayPrice": "0.99", "type": "Consumable"},
    {"productID": "badge", "displayPrice": "9.99", "type": "NonConsumable"}],
  "nonRenewingSubscriptions": [{"productID": "pass", "displayPrice": "5", "type": "NonRenewingSubscription"}],
  "subscriptionGroups": [{"id": "G", "subscriptions": [{"productID": "month", "displayPrice": "4.99",
    "type": "RecurringSubscription", "recurringSubscriptionPeriod": "P1M", "adHocOffers": [
      {"offerID": "offer", "paymentMode": "free", "subscriptionPeriod": "P1W"}]}]}])";

inline StoreConfiguration catalogue(std::string const& settings = "{}") {
    return *StoreConfiguration::parse(
                std::string{R"({"settings": )"} + settings + ", " + sandboxProducts + "}", "shop")
                .configuration;
}

/// A queue and its observer on a sandbox store; reopen() is the next run of the program.
class SandboxStoreTest : public StoreTest {
protected:
    ~SandboxStoreTest() override { queue->setBackend(nullptr); }

    void open(SandboxStore::Options options = {.configuration = catalogue(), .seed = 0}) {
        auto opened = SandboxStore::open(options);
        ASSERT_TRUE(opened.store) << opened.error;
        queue->setBackend(opened.store.get());
        store = std::move(opened.store);
        queue->addTransactionObserver(observer);
        drain();
    }
    void openFile(std::string const& settings = "{}") {
        open({.file = folder / "store.db", .configuration = catalogue(settings), .seed = 0});
    }
    void close() {
        queue->setBackend(nullptr);
        store = nullptr;
        queue->removeTransactionObserver(*observer);
        drain();
        observer->lines.clear();
    }
    void reopen() {
        close();
        openFile();
    }
    Lines buy(std::string product) {
        queue->add(paymentFor(std::move(product)));
        drain();
        return observer->takeLines();
    }
    Lines restore() {
        queue->restoreCompletedTransactions();
        drain();
        return observer->takeLines();
    }
    int failureOf(SKPayment::Fields payment) {
        queue->add(make<SKPayment>(std::move(payment)));
        drain();
        auto const error = observer->last.at(0)->error();
        return error ? error->code() : -1;
    }

    TemporaryFolder folder;
    Ref<SKPaymentQueue> queue = make<SKPaymentQueue>();
    Ref<RecordingObserver> observer = make<RecordingObserver>();
    std::unique_ptr<SandboxStore> store;
    RecordedWarnings warnings;
};

} // namespace trelundo
