#pragma once

#include "tests/support/Files.h" // IWYU pragma: export
#include "tests/support/MainQueue.h"
#include "tests/support/ScopedState.h"
#include "trelundo/platform/foundation/RunLoop.h"
#include "trelundo/platform/storekit/SKError.h" // IWYU pragma: export
#include "trelundo/platform/storekit/SKPaymentQueue.h"
#include "trelundo/platform/storekit/sandbox/SandboxStore.h"

#include <gtest/gtest.h>

namespace trelundo {

using namespace test;

/// Writes down every callback as one line: "a:purchased b:failed(2)", "removed a", "restored", "restore
/// failed(2)".
class RecordingObserver : public NSObject, public SKPaymentTransactionObserver {
public:
    std::vector<std::string> lines;
    SKPaymentTransactions last; // of the last update
    bool finishes = false;      // everything that may be finished, inside the update
    std::function<void(SKPaymentQueue&)> onUpdate;

    void paymentQueueUpdatedTransactions(SKPaymentQueue& queue,
                                         SKPaymentTransactions const& updated) override {
        std::string line;
        last = updated;
        for (auto const& each : updated) {
            line += (line.empty() ? "" : " ") + describe(*each);
            auto const state = each->transactionState();
            bool const isOver = state != SKPaymentTransactionState::purchasing &&
                                state != SKPaymentTransactionState::deferred;
            if (finishes && isOver) queue.finishTransaction(each);
        }
        lines.push_back(line);
        if (auto const action = onUpdate) action(queue); // a copy: it may replace itself
    }
    void paymentQueueRemovedTransactions(SKPaymentQueue&, SKPaymentTransactions const& removed) override {
        std::string line = "removed";
        for (auto const& each : removed) line += " " + each->payment()->productIdentifier();
        lines.push_back(line);
    }
    void paymentQueueRestoreCompletedTransactionsFinished(SKPaymentQueue& queue) override {
        lines.push_back("restored, " + std::to_string(queue.transactions().size()) + " on the queue");
    }
    void paymentQueueRestoreCompletedTransactionsFailed(SKPaymentQueue&, Ref<NSError> const& error) override {
        lines.push_back("restore failed" + describe(error));
    }
    bool paymentQueueShouldAddStorePayment(SKPaymentQueue&, Ref<SKPayment> const& payment,
                                           Ref<SKProduct> const&) override {
        lines.push_back("promoted " + payment->productIdentifier());
        return false;
    }
    std::vector<std::string> takeLines() { return std::exchange(lines, {}); }

private:
    static std::string describe(Ref<NSError> const& error) {
        return error ? "(" + std::to_string(error->code()) + ")" : "";
    }
    static std::string describe(SKPaymentTransaction const& transaction) {
        static constexpr char const* names[] = {"purchasing", "purchased", "failed", "restored", "deferred"};
        return transaction.payment()->productIdentifier() + ":" +
               names[static_cast<int>(transaction.transactionState())] + describe(transaction.error());
    }
};

using Lines = std::vector<std::string>;

inline Ref<SKPayment> paymentFor(std::string product) {
    return make<SKPayment>(SKPayment::Fields{.productIdentifier = std::move(product)});
}

/// A clean main queue and a clock that stands still, for each test.
class StoreTest : public ::testing::Test {
protected:
    StoreTest() { test::clearMainQueue(); }
    ~StoreTest() override { test::clearMainQueue(); }

    static void turn() { RunLoop::main().runTurn(); }
    static void drain() { RunLoop::main().runUntilIdle(); }

    ScopedVirtualClock time{1000};
    RecordedWarnings warnings;
    Ref<SKPaymentQueue> queue = make<SKPaymentQueue>();
    Ref<RecordingObserver> observer = make<RecordingObserver>();
};

/// A product of each kind, one of them with an offer.
inline StoreConfiguration catalogue(std::string const& settings = "{}") {
    return *StoreConfiguration::parse(R"({"settings": )" + settings + R"(, "products": [
        {"productID": "coins", "displayPrice": "0.99", "type": "Consumable"},
        {"productID": "badge", "displayPrice": "9.99", "type": "NonConsumable"}],
      "nonRenewingSubscriptions": [{"productID": "pass", "displayPrice": "5", "type": "NonRenewingSubscription"}],
      "subscriptionGroups": [{"id": "G", "subscriptions": [{"productID": "month", "displayPrice": "4.99",
        "type": "RecurringSubscription", "recurringSubscriptionPeriod": "P1M", "adHocOffers": [
          {"offerID": "offer", "paymentMode": "free", "subscriptionPeriod": "P1W"}]}]}]})",
                                      "shop");
}

/// A sandbox store behind the queue. Opening it again is the next run of the program.
class SandboxTest : public StoreTest {
protected:
    ~SandboxTest() override { queue->setBackend(nullptr); }

    void open(SandboxStore::Options const& options = {.configuration = catalogue(), .seed = 0}) {
        close();
        store = *SandboxStore::open(options);
        queue->setBackend(store.get());
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
    /// The code of the failure; -1 when there is none.
    int failureOf(SKPayment::Fields payment) {
        queue->add(make<SKPayment>(std::move(payment)));
        drain();
        auto const error = observer->last.at(0)->error();
        return error ? error->code() : -1;
    }

    TemporaryFolder folder;
    std::unique_ptr<SandboxStore> store;
};

} // namespace trelundo
