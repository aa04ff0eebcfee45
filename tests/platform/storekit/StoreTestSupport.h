#pragma once

#include "tests/support/Files.h"
#include "tests/support/MainQueue.h"
#include "tests/support/ScopedState.h"
#include "trelundo/platform/foundation/DispatchQueue.h"
#include "trelundo/platform/foundation/RunLoop.h"
#include "trelundo/platform/storekit/SKError.h"
#include "trelundo/platform/storekit/SKPaymentQueue.h"
#include "trelundo/platform/storekit/StoreBackend.h"

#include <csignal>
#include <gtest/gtest.h>
#include <sys/resource.h>

namespace trelundo {

using namespace test;

inline std::string nameOf(SKPaymentTransactionState state) {
    static constexpr char const* names[] = {"purchasing", "purchased", "failed", "restored", "deferred"};
    return names[static_cast<int>(state)];
}

/// Writes down every callback as one line: "a:purchased b:failed(2)", "removed a", "restored", "restore
/// failed(2)".
class RecordingObserver : public NSObject, public SKPaymentTransactionObserver {
public:
    std::vector<std::string> lines;
    SKPaymentTransactions last; // of the last update
    bool acceptsPromotions = false;
    bool finishes = false; // everything that may be finished, inside the update
    std::function<void(SKPaymentQueue&)> onUpdate;

    void paymentQueueUpdatedTransactions(SKPaymentQueue& queue,
                                         SKPaymentTransactions const& updated) override {
        std::string line;
        for (auto const& each : updated) line += (line.empty() ? "" : " ") + describe(*each);
        lines.push_back(line);
        last = updated;
        for (auto const& each : updated) {
            auto const state = each->transactionState();
            bool const isOver = state != SKPaymentTransactionState::purchasing &&
                                state != SKPaymentTransactionState::deferred;
            if (finishes && isOver) queue.finishTransaction(each);
        }
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
        return acceptsPromotions;
    }
    void paymentQueueDidChangeStorefront(SKPaymentQueue& queue) override {
        lines.push_back("storefront " + queue.storefrontCountryCode());
    }

    std::vector<std::string> takeLines() { return std::exchange(lines, {}); }

private:
    static std::string describe(Ref<NSError> const& error) {
        return error ? "(" + std::to_string(error->code()) + ")" : "";
    }
    static std::string describe(SKPaymentTransaction const& transaction) {
        return transaction.payment()->productIdentifier() + ":" + nameOf(transaction.transactionState()) +
               describe(transaction.error());
    }
};

using Lines = std::vector<std::string>;

inline Ref<SKPayment> paymentFor(std::string product) {
    return make<SKPayment>(SKPayment::Fields{.productIdentifier = std::move(product)});
}

/// A store without opinions: it notes what it is asked, and tells and answers what the test says.
class FakeBackend : public StoreBackend {
public:
    void setListener(StoreBackendListener* heard) override { listener = heard; }
    void loadProducts(std::set<std::string> const&, std::function<void(ProductsResult)> done) override {
        answers.push_back(std::move(done));
    }
    bool canMakePayments() const override { return true; }
    void addPayment(SKPayment::Fields const& payment) override {
        calls.push_back("add " + payment.productIdentifier);
    }
    bool finish(std::string const& key) override {
        calls.push_back("finish " + key);
        return true;
    }
    void restore(std::optional<std::string> const&) override { calls.push_back("restore"); }
    void synchronize() override {
        calls.push_back("synchronize");
        if (!waiting.empty()) listener->transactionsUpdated(waiting);
    }
    std::string storefront() const override { return "FRA"; }

    static StoreTransaction report(std::string const& key, SKPaymentTransactionState state, int code = -1) {
        StoreTransaction report{.key = key, .payment = {.productIdentifier = "p" + key}, .state = state};
        if (code >= 0) report.error = makeStoreError(code);
        return report;
    }
    void tell(std::vector<StoreTransaction> reports) const {
        listener->transactionsUpdated(std::move(reports));
    }

    StoreBackendListener* listener = nullptr;
    Lines calls;
    std::vector<StoreTransaction> waiting;
    std::vector<std::function<void(ProductsResult)>> answers; // of the requests, for the test to give
};

/// While it lives, no file grows beyond a limit, as on a full disk.
class FullDisk {
public:
    explicit FullDisk(::rlim_t bytes = 0)
        : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &limit_);
        rlimit const full{bytes, limit_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &full);
    }
    ~FullDisk() {
        ::setrlimit(RLIMIT_FSIZE, &limit_);
        std::signal(SIGXFSZ, handler_);
    }
    FullDisk(FullDisk const&) = delete;
    FullDisk& operator=(FullDisk const&) = delete;

private:
    void (*handler_)(int);
    rlimit limit_{};
};

/// A clean main queue and a clock that stands still, for each test.
class StoreTest : public ::testing::Test {
protected:
    StoreTest() { test::clearMainQueue(); }
    ~StoreTest() override { test::clearMainQueue(); }

    static void turn() { RunLoop::main().runTurn(); }
    static void drain() { RunLoop::main().runUntilIdle(); }

    ScopedVirtualClock time{1000};
};

} // namespace trelundo
