#pragma once

#include "tests/support/Files.h" // IWYU pragma: export
#include "tests/support/MainQueue.h"
#include "tests/support/ScopedState.h"
#include "trelundo/platform/foundation/RunLoop.h"
#include "trelundo/platform/storekit/SKError.h" // IWYU pragma: export
#include "trelundo/platform/storekit/SKPaymentQueue.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace trelundo {

using namespace test;

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
        static constexpr char const* names[] = {"purchasing", "purchased", "failed", "restored", "deferred"};
        return transaction.payment()->productIdentifier() + ":" +
               names[static_cast<int>(transaction.transactionState())] + describe(transaction.error());
    }
};

using Lines = std::vector<std::string>;

inline Ref<SKPayment> paymentFor(std::string product) {
    return make<SKPayment>(SKPayment::Fields{.productIdentifier = std::move(product)});
}

/// Hears of every statement that begins, and of every one that has ended, in the databases that are opened
/// while it lives. One at a time.
class DatabaseProbe {
public:
    using Listener = std::function<void(std::string_view sql, bool hasEnded)>;

    explicit DatabaseProbe(Listener listener = nullptr)
        : listener_(std::move(listener)) {
        current = this;
        sqlite3_auto_extension(reinterpret_cast<void (*)()>(attach));
    }
    ~DatabaseProbe() { sqlite3_cancel_auto_extension(reinterpret_cast<void (*)()>(attach)); }
    DatabaseProbe(DatabaseProbe const&) = delete;
    DatabaseProbe& operator=(DatabaseProbe const&) = delete;

    /// In the database opened first.
    void execute(char const* sql) const {
        ASSERT_EQ(sqlite3_exec(database_, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sql;
    }

private:
    static int attach(sqlite3* database, char**, sqlite3_api_routines const*) {
        if (!current->database_) current->database_ = database;
        return sqlite3_trace_v2(database, SQLITE_TRACE_STMT | SQLITE_TRACE_PROFILE, hear, current);
    }
    static int hear(unsigned event, void* probe, void* statement, void*) {
        auto const& listener = static_cast<DatabaseProbe*>(probe)->listener_;
        if (listener)
            listener(sqlite3_sql(static_cast<sqlite3_stmt*>(statement)), event == SQLITE_TRACE_PROFILE);
        return 0;
    }

    static inline DatabaseProbe* current = nullptr;
    Listener listener_;
    sqlite3* database_ = nullptr;
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
