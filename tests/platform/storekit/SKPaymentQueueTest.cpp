#include "tests/platform/storekit/StoreTestSupport.h"

#include "tests/support/FakeStore.h"

#include <algorithm>
#include <stdexcept>
#include <thread>

namespace trelundo {
namespace {

using State = SKPaymentTransactionState;

class PaymentQueueTest : public StoreTest {
protected:
    void observe() {
        queue->addTransactionObserver(observer);
        drain();
        store.calls.clear();
    }
    void tell(std::string const& key, State state) {
        store.tell({FakeStore::transaction(key, state)});
        drain();
    }

    FakeStore store{*queue};
};

TEST_F(PaymentQueueTest, ProcessesNothingWithoutObserver) {
    auto const payment = make<SKMutablePayment>();
    payment->setProductIdentifier("a");
    queue->add(payment);
    payment->setProductIdentifier("changed after the call");
    queue->restoreCompletedTransactions();
    store.listener->promotedPurchase({.productIdentifier = "b"}, nullptr);
    drain();
    EXPECT_EQ(store.calls, Lines{});

    queue->addTransactionObserver(observer);
    EXPECT_EQ(store.calls, (Lines{"synchronize", "add a", "restore"}));
    drain();
    EXPECT_EQ(observer->lines, Lines{"promoted b"});
    EXPECT_EQ(store.calls.size(), 3U) << "a promotion that is not accepted is not bought";

    queue->removeTransactionObserver(*observer);
    store.tell({FakeStore::transaction("1", State::restored)});
    store.listener->restoreFinished();
    drain();
    EXPECT_EQ(observer->takeLines(), Lines{"promoted b"});
    queue->addTransactionObserver(observer);
    drain();
    EXPECT_EQ(observer->lines, (Lines{"p1:restored", "restored, 1 on the queue"}))
        << "what waits keeps its order";

    observer = nullptr; // a destroyed observer counts as none
    queue->add(paymentFor("c"));
    EXPECT_EQ(std::ranges::count(store.calls, "add c"), 0);
}

TEST_F(PaymentQueueTest, BringsUnfinishedTransactionsInTheNextTurn) {
    auto const second = make<RecordingObserver>();
    auto const late = make<RecordingObserver>();
    store.waiting = {FakeStore::transaction("1", State::purchased),
                     FakeStore::transaction("2", State::deferred)};
    queue->addTransactionObserver(observer);
    queue->addTransactionObserver(observer);
    queue->addTransactionObserver(second);
    EXPECT_EQ(observer->lines, Lines{});
    turn();
    EXPECT_EQ(observer->takeLines(), Lines{"p1:purchased p2:deferred"});
    drain();
    EXPECT_EQ(observer->lines, Lines{}) << "once only";
    EXPECT_EQ(second->lines, Lines{"p1:purchased p2:deferred"});

    queue->addTransactionObserver(late);
    turn();
    EXPECT_EQ(late->lines, Lines{"p1:purchased p2:deferred"});
    EXPECT_EQ(observer->lines, Lines{}) << "who has heard is not told again";
}

TEST_F(PaymentQueueTest, UpdatesOneObjectInPlaceOnTheMainQueue) {
    observe();
    std::thread{[&] { store.tell({FakeStore::transaction("1", State::purchasing)}); }}.join();
    EXPECT_EQ(observer->lines, Lines{}) << "never inside the call";
    turn();
    auto const transaction = observer->last.at(0);
    tell("1", State::deferred);
    auto paid = FakeStore::transaction("1", State::restored);
    paid.transactionIdentifier = "1";
    paid.date = 5;
    paid.originalIdentifier = "0";
    paid.originalDate = 3;
    store.tell({paid});
    drain();
    EXPECT_EQ(observer->lines, (Lines{"p1:purchasing", "p1:deferred", "p1:restored"}));
    EXPECT_TRUE(observer->last.at(0) == transaction);
    EXPECT_EQ(transaction->transactionIdentifier(), "1");
    EXPECT_EQ(transaction->transactionDate(), 5);
    EXPECT_EQ(queue->transactions().size(), 1U);
    auto const original = transaction->original();
    ASSERT_TRUE(original);
    EXPECT_EQ(original->transactionIdentifier(), "0");
    EXPECT_EQ(original->transactionDate(), 3);
    EXPECT_EQ(original->transactionState(), State::purchased);
}

TEST_F(PaymentQueueTest, FinishedTransactionsLeaveInALaterTurn) {
    observer->finishes = true;
    observe();
    store.tell({FakeStore::transaction("1", State::failed, 2)});
    turn();
    EXPECT_EQ(store.calls, Lines{"finish 1"});
    EXPECT_EQ(queue->transactions().size(), 1U);
    turn();
    EXPECT_EQ(queue->transactions().size(), 0U);
    EXPECT_EQ(observer->takeLines(), (Lines{"p1:failed(2)", "removed p1"}));

    store.tell({FakeStore::transaction("1", State::failed, 2)});
    drain();
    EXPECT_EQ(observer->lines, Lines{}) << "a report from before the finish is stale";

    observer->finishes = false;
    for (auto const* key : {"2", "3", "4", "5", "6"}) tell(key, State::purchased);
    auto const all = queue->transactions();
    for (auto const i : {3U, 0U, 4U}) {
        queue->finishTransaction(all[i]);
        drain();
    }
    std::string left;
    for (auto const& each : queue->transactions()) left += each->payment()->productIdentifier();
    EXPECT_EQ(left, "p3p4") << "the others keep their order";
}

TEST_F(PaymentQueueTest, RefusesWhatCannotBeFinished) {
    observe();
    store.tell({FakeStore::transaction("1", State::purchasing), FakeStore::transaction("2", State::deferred),
                FakeStore::transaction("3", State::purchased)});
    drain();
    for (auto const& transaction : queue->transactions()) queue->finishTransaction(transaction);
    EXPECT_EQ(store.calls, Lines{"finish 3"});
    queue->finishTransaction(observer->last.at(2));
    queue->finishTransaction(make<SKPaymentTransaction>(
        SKPaymentTransaction::Fields{.payment = paymentFor("x"), .state = State::purchased}));
    queue->finishTransaction(nullptr);
    EXPECT_EQ(store.calls, Lines{"finish 3"});
    EXPECT_EQ(warnings.lines, (Lines{"Transaction 1 was not finished: it is still purchasing",
                                     "Transaction 2 was not finished: it waits for approval",
                                     "Transaction 3 was not finished: it is finished already",
                                     "A transaction was not finished: it is not on the queue",
                                     "A transaction was not finished: it is not on the queue"}));
}

TEST_F(PaymentQueueTest, DeliversAllRestoredTransactionsOnceAndHoldsThemUntilTheEnd) {
    observer->finishes = true;
    observe();
    queue->restoreCompletedTransactions();
    store.tell({FakeStore::transaction("1", State::restored)});
    store.tell({FakeStore::transaction("2", State::restored), FakeStore::transaction("3", State::restored)});
    tell("9", State::purchased);
    EXPECT_EQ(observer->takeLines(), (Lines{"p9:purchased", "removed p9"})) << "it waits for no restore";
    EXPECT_EQ(queue->transactions().size(), 3U);
    store.listener->restoreFinished();
    drain();
    EXPECT_EQ(observer->lines,
              (Lines{"p1:restored p2:restored p3:restored", "restored, 3 on the queue", "removed p1 p2 p3"}));
    EXPECT_TRUE(queue->transactions().empty());

    observer->lines.clear();
    queue->restoreCompletedTransactions();
    store.tell({FakeStore::transaction("4", State::purchased)});
    store.listener->restoreFinished();
    drain();
    EXPECT_EQ(observer->lines, (Lines{"p4:purchased", "removed p4", "restored, 0 on the queue"}))
        << "what ends in an empty restore is gone when the restore ends";
}

TEST_F(PaymentQueueTest, WhatIsFinishedDuringARestoreStaysUntilItsEnd) {
    observe();
    queue->restoreCompletedTransactions();
    store.tell({FakeStore::transaction("1", State::restored)});
    store.listener->restoreFinished();
    drain();
    queue->restoreCompletedTransactions();
    queue->finishTransaction(observer->last.at(0));
    drain();
    EXPECT_EQ(queue->transactions().size(), 1U) << "an empty queue would tell of a restore of nothing";
    store.listener->restoreFinished();
    drain();
    EXPECT_TRUE(queue->transactions().empty());
}

TEST_F(PaymentQueueTest, DropsWhatAStoreSaysTwiceOrWithoutBeingAsked) {
    observe();
    store.tell({FakeStore::transaction("1", State::purchasing), FakeStore::transaction("1", State::purchased),
                FakeStore::transaction("1", State::purchased)});
    store.listener->restoreFinished();
    store.listener->restoreFailed(nullptr);
    drain();
    queue->restoreCompletedTransactions();
    store.tell({FakeStore::transaction("2", State::restored), FakeStore::transaction("2", State::restored)});
    drain();
    EXPECT_EQ(observer->takeLines(), Lines{"p1:purchased"});
    store.listener->restoreFinished();
    store.listener->restoreFinished();
    drain();
    EXPECT_EQ(observer->lines, (Lines{"p2:restored", "restored, 2 on the queue"}));
    EXPECT_EQ(warnings.lines.size(), 3U);
}

TEST_F(PaymentQueueTest, AnExceptionOfAHostLeavesNothingBehind) {
    auto const second = make<RecordingObserver>();
    observer->finishes = second->finishes = true;
    queue->addTransactionObserver(observer);
    queue->addTransactionObserver(second);
    drain();
    observer->onUpdate = [](SKPaymentQueue&) { throw std::runtime_error("host"); };
    queue->restoreCompletedTransactions();
    queue->restoreCompletedTransactions();
    store.tell({FakeStore::transaction("1", State::restored)});
    store.listener->restoreFinished();
    EXPECT_THROW(drain(), std::runtime_error);
    drain();
    EXPECT_EQ(second->lines, (Lines{"p1:restored", "restored, 1 on the queue", "removed p1"}));
    EXPECT_EQ(observer->lines, second->lines);
    EXPECT_EQ(std::ranges::count(store.calls, "restore"), 2) << "the next restore has begun";
}

TEST_F(PaymentQueueTest, ARestoreInsideARestoreFollowsIt) {
    observer->finishes = true;
    observe();
    observer->onUpdate = [&](SKPaymentQueue& caller) { caller.restoreCompletedTransactions(); };
    queue->restoreCompletedTransactions();
    store.tell({FakeStore::transaction("1", State::restored)});
    store.listener->restoreFinished();
    drain();
    observer->onUpdate = nullptr;
    EXPECT_EQ(std::ranges::count(store.calls, "restore"), 2);
    store.listener->restoreFailed(makeStoreError(SKErrorCode::paymentCancelled));
    drain();
    EXPECT_EQ(observer->lines,
              (Lines{"p1:restored", "restored, 1 on the queue", "removed p1", "restore failed(2)"}));
}

TEST_F(PaymentQueueTest, ObserversMayComeAndGoInsideACallback) {
    auto victim = make<RecordingObserver>();
    auto const removed = make<RecordingObserver>();
    auto const late = make<RecordingObserver>();
    queue->addTransactionObserver(observer);
    queue->addTransactionObserver(victim);
    queue->addTransactionObserver(removed);
    drain();
    observer->onUpdate = [&](SKPaymentQueue& caller) {
        observer->onUpdate = nullptr;
        victim = nullptr;
        caller.removeTransactionObserver(*removed);
        caller.addTransactionObserver(late);
        caller.removeTransactionObserver(*observer);
        caller.add(paymentFor("q"));
    };
    tell("1", State::purchased);
    EXPECT_EQ(observer->lines, Lines{"p1:purchased"});
    EXPECT_EQ(removed->lines, Lines{});
    EXPECT_EQ(late->lines, Lines{"p1:purchased"}) << "who comes late is told in the next turn";
    EXPECT_EQ(store.calls.back(), "add q");
}

TEST_F(PaymentQueueTest, AnObserverMayDestroyItselfAndTheQueueInsideACallback) {
    observe();
    observer->onUpdate = [this](SKPaymentQueue&) {
        queue->setBackend(nullptr);
        queue = make<SKPaymentQueue>();
        observer = nullptr;
    };
    tell("1", State::purchased);
    EXPECT_EQ(observer, nullptr);
}

TEST_F(PaymentQueueTest, AReplacedStoreFailsWhatItHasNotAnswered) {
    observe();
    for (auto const* product : {"p1", "silent", "p2"}) queue->add(paymentFor(product));
    tell("1", State::purchasing);
    tell("2", State::deferred);
    observer->lines.clear();
    store.tell({FakeStore::transaction("3", State::purchased)}); // on the way, and forgotten
    queue->restoreCompletedTransactions();
    queue->restoreCompletedTransactions();
    FakeStore const next{*queue};
    observer->finishes = true;
    drain();
    EXPECT_EQ(observer->lines, (Lines{"silent:failed(0)", "p1:failed(0)", "restore failed(0)",
                                      "restore failed(0)", "removed silent p1"}));
    EXPECT_EQ(next.calls, Lines{"synchronize"}) << "what it never knew is not finished there";
    EXPECT_EQ(store.listener, nullptr);
    EXPECT_TRUE(queue->transactions().empty());

    observer->lines.clear();
    queue->setBackend(nullptr);
    queue->add(paymentFor("a"));
    queue->restoreCompletedTransactions();
    drain();
    EXPECT_EQ(observer->lines, (Lines{"a:failed(0)", "removed a", "restore failed(0)"}));
    EXPECT_EQ(queue->storefrontCountryCode(), "");
}

TEST_F(PaymentQueueTest, EndsTheProgramForAPaymentThatCannotBe) {
    EXPECT_DEATH(queue->add(make<SKMutablePayment>()), "product identifier");
    for (int const quantity : {0, 11}) {
        auto const payment =
            make<SKPayment>(SKPayment::Fields{.productIdentifier = "a", .quantity = quantity});
        EXPECT_DEATH(queue->add(payment), "quantity");
    }
}

} // namespace
} // namespace trelundo
