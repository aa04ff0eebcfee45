#include "SandboxStoreTest.h"

#include <algorithm>

namespace trelundo {
namespace {

using Kind = SandboxStore::Outcome::Kind;
using RestoreKind = SandboxStore::RestoreOutcome::Kind;
using State = SKPaymentTransactionState;

TEST_F(SandboxStoreTest, SellsByTurnsAfterTheDelay) {
    open({.configuration = catalogue(), .seed = 3, .delay = 2});
    EXPECT_EQ(buy("coins"), Lines{"coins:purchasing"});
    time.clock.setNow(2);
    drain();
    EXPECT_EQ(observer->takeLines(), Lines{"coins:purchased"});
    EXPECT_EQ(observer->last.at(0)->transactionIdentifier(), "1000003001");
    EXPECT_EQ(observer->last.at(0)->transactionDate(), 1002);
    store->setDelay(0);
    queue->add(paymentFor("coins"));
    EXPECT_EQ(observer->lines, Lines{});
    turn();
    EXPECT_EQ(observer->lines, Lines{"coins:purchasing"});
    turn();
    EXPECT_EQ(observer->lines, (Lines{"coins:purchasing", "coins:purchased"}));
}

TEST_F(SandboxStoreTest, FollowsTheScriptButRefusesWhatItCannotSell) {
    open();
    observer->finishes = true;
    for (auto const& [outcome, expected] :
         {std::pair{SandboxStore::Outcome{Kind::failed, 7}, "coins:failed(7)"},
          {SandboxStore::Outcome{Kind::failedWithoutError, 0}, "coins:failed"},
          {SandboxStore::Outcome{Kind::cancelled, 0}, "coins:failed(2)"},
          {SandboxStore::Outcome{Kind::deferred, 0}, "coins:deferred"},
          {SandboxStore::Outcome{Kind::purchased, 0}, "coins:purchased"}}) {
        store->setNextOutcome(outcome);
        EXPECT_EQ(buy("coins").at(1), expected);
    }
    EXPECT_EQ(buy("coins").at(1), "coins:purchased");
    EXPECT_EQ(buy("nothing").at(1), "nothing:failed(5)");
    EXPECT_FALSE(store->promote("nothing"));
    store->setCanMakePayments(false);
    EXPECT_EQ(buy("coins").at(1), "coins:failed(4)");
    EXPECT_FALSE(store->canMakePayments());
}

TEST_F(SandboxStoreTest, HonoursTheSettingsOfTheConfiguration) {
    open({.configuration = catalogue(R"({"_askToBuyEnabled": true, "_storefront": "JPN"})"), .seed = 0});
    EXPECT_EQ(buy("coins").back(), "coins:deferred");
    EXPECT_EQ(queue->storefrontCountryCode(), "JPN");
    store->setStorefront("FRA");
    drain();
    EXPECT_EQ(observer->takeLines(), Lines{"storefront FRA"});
    open({.configuration =
              catalogue(R"({"_failTransactionsEnabled": true, "_storeKitError": 3, "_storeKitErrors": [
        {"name": "App Store Sync", "enabled": true}]})"),
          .seed = 0});
    EXPECT_EQ(buy("coins").back(), "coins:failed(3)");
    EXPECT_EQ(restore().back(), "restore failed(0)");
    store->setNextOutcome({});
    store->setRestoreOutcome({});
    EXPECT_EQ(buy("coins").back(), "coins:purchased") << "a script goes before the settings";
    EXPECT_EQ(restore().back(), "restored, 2 on the queue");
}

TEST_F(SandboxStoreTest, RestoresWhatIsOwned) {
    observer->finishes = true;
    open();
    for (auto const* product : {"coins", "badge", "pass", "month", "badge"}) buy(product);
    EXPECT_EQ(restore(),
              (Lines{"badge:restored month:restored", "restored, 2 on the queue", "removed badge month"}));
    auto const badge = observer->last.at(0);
    EXPECT_EQ(badge->original()->transactionIdentifier(), "1000000002");
    EXPECT_NE(badge->transactionIdentifier(), "1000000002");
    EXPECT_EQ(restore().at(0), "badge:restored month:restored") << "as often as asked";

    store->setRestoreOutcome({RestoreKind::nothing, 0});
    EXPECT_EQ(restore(), Lines{"restored, 0 on the queue"});
    store->setRestoreOutcome({RestoreKind::failed, 2});
    EXPECT_EQ(restore(), Lines{"restore failed(2)"});
    store->setRestoreOutcome({RestoreKind::failedWithoutError, 0});
    EXPECT_EQ(restore(), Lines{"restore failed"});
}

TEST_F(SandboxStoreTest, RestoringAgainUsesWhatIsStillUnfinished) {
    openFile();
    buy("badge");
    restore();
    auto const before = store->transactions().size();
    restore();
    EXPECT_EQ(store->transactions().size(), before);
    reopen();
    EXPECT_EQ(observer->lines, Lines{"badge:purchased badge:restored"});
}

TEST_F(SandboxStoreTest, WhatIsUnfinishedComesBackUntilItIsFinished) {
    openFile();
    buy("coins");
    store->setNextOutcome({Kind::failed, 7});
    buy("badge");
    store->setNextOutcome({Kind::failedWithoutError, 0});
    buy("badge");
    for (int run = 0; run < 2; ++run) {
        reopen();
        EXPECT_EQ(observer->lines, Lines{"coins:purchased badge:failed(7) badge:failed"});
        EXPECT_EQ(observer->last.at(0)->transactionIdentifier(), "1000000001");
        EXPECT_EQ(observer->last.at(0)->transactionDate(), 1000);
    }
    for (auto const& each : queue->transactions()) queue->finishTransaction(each);
    reopen();
    EXPECT_EQ(observer->lines, Lines{});
    EXPECT_EQ(buy("coins").back(), "coins:purchased");
    EXPECT_EQ(observer->last.at(0)->transactionIdentifier(), "1000000004")
        << "identifiers are never used twice";
}

TEST_F(SandboxStoreTest, APaymentKeepsItsFieldsInTheFile) {
    openFile();
    auto const discount = make<SKPaymentDiscount>(SKPaymentDiscount::Fields{
        .identifier = "offer", .keyIdentifier = "K", .nonce = "n", .signature = "s", .timestamp = 5});
    queue->add(make<SKPayment>(SKPayment::Fields{.productIdentifier = "month",
                                                 .quantity = 3,
                                                 .applicationUsername = "",
                                                 .simulatesAskToBuyInSandbox = true,
                                                 .paymentDiscount = discount}));
    drain();
    EXPECT_EQ(observer->lines.back(), "month:deferred");
    reopen();
    auto const payment = observer->last.at(0)->payment();
    EXPECT_EQ(payment->quantity(), 3);
    EXPECT_EQ(payment->applicationUsername(), "");
    EXPECT_EQ(payment->paymentDiscount()->signature(), "s");
    EXPECT_EQ(payment->paymentDiscount()->timestamp(), 5);
}

TEST_F(SandboxStoreTest, DeferredTransactionsWaitForAWord) {
    observer->finishes = true;
    openFile(R"({"_askToBuyEnabled": true})");
    for (auto const* product : {"coins", "badge", "month"}) buy(product);
    reopen();
    EXPECT_EQ(observer->takeLines(), Lines{"coins:deferred badge:deferred month:deferred"});
    auto const month = observer->last.at(2);
    EXPECT_FALSE(store->approve("1000000099"));
    EXPECT_EQ(store->lastError(), "no deferred transaction 1000000099");
    EXPECT_TRUE(store->approve("1000000003"));
    EXPECT_EQ(observer->lines, Lines{}) << "told in a later turn";
    drain();
    EXPECT_EQ(observer->takeLines(), (Lines{"month:purchased", "removed month"}));
    EXPECT_TRUE(observer->last.at(0) == month) << "the same transaction";
    EXPECT_FALSE(store->approve("1000000003"));
    EXPECT_TRUE(store->decline());
    EXPECT_TRUE(store->approve());
    EXPECT_FALSE(store->approve());
    drain();
    EXPECT_EQ(observer->takeLines(),
              (Lines{"coins:failed(4)", "badge:purchased", "removed coins", "removed badge"}));
    EXPECT_EQ(restore().at(0), "badge:restored month:restored");
}

TEST_F(SandboxStoreTest, ApprovesWithoutQueueOrCatalogue) {
    openFile(R"({"_askToBuyEnabled": true})");
    buy("badge");
    close();
    {
        auto const offline = SandboxStore::open({.file = folder / "store.db"});
        ASSERT_TRUE(offline.store);
        ASSERT_EQ(offline.store->transactions().size(), 1U);
        EXPECT_EQ(offline.store->transactions()[0].transaction.state, State::deferred);
        EXPECT_TRUE(offline.store->approve());
    }
    observer->finishes = true;
    openFile();
    EXPECT_EQ(observer->takeLines(), (Lines{"badge:purchased", "removed badge"}));
    EXPECT_EQ(restore().at(0), "badge:restored");
}

TEST_F(SandboxStoreTest, AnInterruptedPurchaseArrivesOnceAfterResuming) {
    observer->finishes = true;
    openFile();
    store->interruptNext();
    EXPECT_EQ(buy("badge").at(1), "badge:failed(0)");
    EXPECT_EQ(buy("coins").at(1), "coins:purchased") << "only one is interrupted";
    reopen();
    EXPECT_EQ(observer->lines, Lines{});
    for (auto const& arrived : {Lines{"badge:purchased", "removed badge"}, Lines{}}) {
        EXPECT_TRUE(store->resume());
        drain();
        EXPECT_EQ(observer->takeLines(), arrived);
    }
    EXPECT_EQ(restore().at(0), "badge:restored");
}

TEST_F(SandboxStoreTest, APurchaseLeftInTheMiddleGoesOnInTheNextRun) {
    openFile();
    store->setDelay(5);
    queue->add(paymentFor("badge"));
    drain();
    reopen();
    EXPECT_EQ(observer->lines, (Lines{"badge:purchasing", "badge:purchased"}));
}

TEST_F(SandboxStoreTest, ClearingForgetsEverything) {
    observer->finishes = true;
    open();
    buy("badge");
    restore();
    queue->add(paymentFor("coins"));
    EXPECT_TRUE(store->clear());
    drain();
    EXPECT_EQ(store->transactions().size(), 0U);
    observer->lines.clear();
    EXPECT_EQ(restore().at(0).substr(0, 8), "restored");
}

TEST_F(SandboxStoreTest, BuysAtOnce) {
    open();
    auto const key = store->buyAtOnce({.productIdentifier = "badge"});
    EXPECT_EQ(key, "1000000001");
    EXPECT_TRUE(store->finish(*key));
    EXPECT_FALSE(store->finish(*key));
    EXPECT_FALSE(store->finish("nonsense"));
    drain();
    EXPECT_EQ(observer->lines, Lines{});
    EXPECT_EQ(restore().at(0), "badge:restored");
}

TEST_F(SandboxStoreTest, SaysSoWhenTheDiskIsFullAndGoesOnAfterwards) {
    observer->finishes = true;
    openFile();
    buy("badge");
    auto full = std::make_optional<FullDisk>();
    auto const bought = buy("coins");
    auto const restored = restore();
    bool const isResumed = store->resume();
    full.reset();
    EXPECT_EQ(bought, (Lines{"coins:failed(0)", "removed coins"}));
    EXPECT_EQ(restored, Lines{"restore failed(0)"});
    EXPECT_TRUE(isResumed) << "nothing was held back, so nothing had to be written";
    EXPECT_TRUE(store->lastError().starts_with((folder / "store.db").string() + ": the disk"))
        << store->lastError();
    EXPECT_EQ(buy("coins").at(1), "coins:purchased");
    EXPECT_EQ(restore().at(0), "badge:restored");
}

TEST_F(SandboxStoreTest, AnOutcomeThatCannotBeRecordedIsTriedAgain) {
    openFile();
    queue->add(paymentFor("coins"));
    {
        FullDisk const full;
        drain();
    }
    EXPECT_EQ(observer->takeLines(), Lines{"coins:purchasing"}) << "not told before it is on the disk";
    time.clock.setNow(1);
    drain();
    EXPECT_EQ(observer->takeLines(), Lines{"coins:purchased"});
    {
        FullDisk const full;
        queue->finishTransaction(observer->last.at(0));
    }
    drain();
    EXPECT_EQ(queue->transactions().size(), 1U);
    queue->finishTransaction(observer->last.at(0));
    drain();
    EXPECT_EQ(queue->transactions().size(), 0U);
}

TEST_F(SandboxStoreTest, MayBeDestroyedWithWorkUnderWay) {
    openFile();
    queue->add(paymentFor("coins"));
    queue->restoreCompletedTransactions();
    queue->setBackend(nullptr);
    store = nullptr;
    drain();
    EXPECT_EQ(observer->lines, Lines{});
}

} // namespace
} // namespace trelundo
