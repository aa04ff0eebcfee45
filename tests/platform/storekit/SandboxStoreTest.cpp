#include "tests/platform/storekit/StoreTestSupport.h"
#include "tests/support/FaultyDisk.h"

namespace trelundo {
namespace {

using Kind = SandboxStore::Outcome::Kind;
using RestoreKind = SandboxStore::RestoreOutcome::Kind;
using State = SKPaymentTransactionState;

class SandboxStoreTest : public SandboxTest {
protected:
    void wait(int seconds) {
        for (; seconds > 0; --seconds) {
            time.clock.setNow(time.clock.now() + 1);
            drain();
        }
    }
};

TEST_F(SandboxStoreTest, SellsByTurnsAfterTheDelay) {
    open({.configuration = catalogue(), .seed = 3, .delay = 2});
    EXPECT_EQ(buy("coins"), Lines{"coins:purchasing"});
    wait(2);
    EXPECT_EQ(observer->takeLines(), Lines{"coins:purchased"});
    EXPECT_EQ(observer->last.at(0)->transactionIdentifier(), "1000003001");
    EXPECT_EQ(observer->last.at(0)->transactionDate(), 1002);
    open();
    queue->add(paymentFor("coins"));
    EXPECT_EQ(observer->lines, Lines{});
    turn();
    EXPECT_EQ(observer->lines, Lines{"coins:purchasing"});
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
    store->setNextOutcome({Kind::cancelled, 0});
    EXPECT_EQ(buy("nothing").at(1), "nothing:failed(2)") << "as told, even so";
    EXPECT_EQ(store->promote("nothing").error().message, "no product nothing");
    store->interruptNext();
    EXPECT_EQ(buy("coins").at(1), "coins:failed(0)");
    EXPECT_EQ(buy("coins").at(1), "coins:purchased") << "only one is interrupted";
    store->setCanMakePayments(false);
    EXPECT_EQ(buy("coins").at(1), "coins:failed(4)");
}

TEST_F(SandboxStoreTest, HonoursTheSettingsOfTheConfiguration) {
    open({.configuration = catalogue(R"({"_askToBuyEnabled": true, "_storefront": "JPN"})"), .seed = 0});
    EXPECT_EQ(buy("coins").back(), "coins:deferred");
    EXPECT_EQ(queue->storefrontCountryCode(), "JPN");
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
    auto const before = store->transactions()->size();
    restore();
    EXPECT_EQ(store->transactions()->size(), before);
    openFile();
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
        openFile();
        EXPECT_EQ(observer->lines, Lines{"coins:purchased badge:failed(7) badge:failed"});
        EXPECT_EQ(observer->last.at(0)->transactionIdentifier(), "1000000001");
        EXPECT_EQ(observer->last.at(0)->transactionDate(), 1000);
    }
    for (auto const& each : queue->transactions()) queue->finishTransaction(each);
    openFile();
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
    openFile();
    auto const payment = observer->last.at(0)->payment();
    EXPECT_EQ(payment->quantity(), 3);
    EXPECT_EQ(payment->applicationUsername(), "");
    EXPECT_EQ(payment->paymentDiscount()->signature(), "s");
    EXPECT_EQ(payment->paymentDiscount()->timestamp(), 5);
}

TEST_F(SandboxStoreTest, DeferredTransactionsWaitForAWord) {
    observer->finishes = true;
    openFile(R"({"_askToBuyEnabled": true})");
    for (auto const* product : {"coins", "badge", "month", "pass"}) buy(product);
    close();
    EXPECT_TRUE((*SandboxStore::open({.file = folder / "store.db"}))->approve("1000000004"))
        << "also without queue and catalogue";
    openFile();
    EXPECT_EQ(observer->takeLines(),
              (Lines{"coins:deferred badge:deferred month:deferred pass:purchased", "removed pass"}));
    auto const month = observer->last.at(2);
    EXPECT_EQ(store->approve("1000000099").error().message, "no deferred transaction 1000000099");
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
    EXPECT_EQ(observer->takeLines(), (Lines{"coins:failed(4)", "badge:purchased", "removed coins badge"}));
    EXPECT_EQ(restore().at(0), "badge:restored month:restored");
}

TEST_F(SandboxStoreTest, ClearingForgetsEverything) {
    observer->finishes = true;
    open();
    buy("badge");
    restore();
    queue->add(paymentFor("coins"));
    EXPECT_TRUE(store->clear());
    drain();
    EXPECT_EQ(store->transactions()->size(), 0U);
    EXPECT_EQ(warnings.lines, Lines{}) << "a purchase that is gone is no failure";
    observer->lines.clear();
    EXPECT_EQ(restore().at(0).substr(0, 8), "restored");
}

TEST_F(SandboxStoreTest, WhatCannotBeRecordedFailsWithItsReason) {
    FaultyDisk disk;
    openFile();
    buy("badge");
    auto const badge = observer->last.at(0);
    queue->add(paymentFor("coins")); // on record; its outcome is on the way
    disk.fail(FaultyDisk::Call::write, 1, 1000);
    auto const reason = (folder / "store.db").string() + ": the disk cannot be read or written";
    drain();
    EXPECT_EQ(observer->takeLines(), Lines{"coins:purchasing"}) << "told no outcome, and not cleared";
    EXPECT_EQ(restore(), Lines{}) << "tried again first";
    wait(2);
    EXPECT_EQ(observer->takeLines(), Lines{"restore failed(0)"});
    EXPECT_EQ(buy("pass"), Lines{"pass:failed(0)"});
    EXPECT_EQ(observer->last.at(0)->error()->localizedDescription(), reason);
    queue->finishTransaction(badge);
    EXPECT_EQ(warnings.lines.back(), "Transaction 1000000001 was not finished: " + reason);
    EXPECT_EQ(store->clear().error().message, reason);

    disk.setJudge(nullptr);
    queue->finishTransaction(badge);
    wait(1);
    EXPECT_EQ(observer->takeLines(), (Lines{"removed badge", "coins:purchased"}));
    EXPECT_EQ(restore().at(0), "badge:restored");
    close(); // before the disk goes
}

TEST_F(SandboxStoreTest, ADiskThatFailsForAWhileDelaysAndLosesNothing) {
    FaultyDisk disk;
    openFile();
    disk.fail(FaultyDisk::Call::synchronize, 1, 20);
    EXPECT_EQ(buy("badge"), Lines{}) << "it may be in the log, so it has not failed";
    wait(10);
    EXPECT_EQ(observer->takeLines(), (Lines{"badge:purchasing", "badge:purchased"}));
    EXPECT_EQ(warnings.lines.size(), 1U) << "told once";
    disk.fail(FaultyDisk::Call::write, 1, 3);
    queue->restoreCompletedTransactions();
    wait(3);
    EXPECT_EQ(observer->takeLines(), (Lines{"badge:restored", "restored, 2 on the queue"}));

    close();
    auto opened = *SandboxStore::open({.file = folder / "store.db", .configuration = catalogue()});
    disk.fail(FaultyDisk::Call::read, 1, 12);
    queue->setBackend(opened.get());
    store = std::move(opened);
    queue->addTransactionObserver(observer);
    wait(12);
    EXPECT_EQ(observer->takeLines(), Lines{"badge:purchased badge:restored"}) << "what is unfinished";
    close(); // before the disk goes
}

TEST_F(SandboxStoreTest, MayBeDestroyedWithWorkUnderWay) {
    open();
    queue->add(paymentFor("coins"));
    queue->restoreCompletedTransactions();
    queue->setBackend(nullptr);
    store = nullptr;
    drain();
    EXPECT_EQ(observer->lines, (Lines{"coins:failed(0)", "restore failed(0)"}));
}

// Offers

TEST_F(SandboxStoreTest, ChecksOffers) {
    open();
    auto const pay = [&](SKPaymentDiscount::Fields fields, std::string product = "month") {
        return failureOf({.productIdentifier = product, .paymentDiscount = make<SKPaymentDiscount>(fields)});
    };
    SKPaymentDiscount::Fields const sound{
        .identifier = "offer", .keyIdentifier = "K", .nonce = "n", .signature = "s"};
    EXPECT_EQ(pay(sound), -1);
    EXPECT_EQ(pay(sound, "badge"), 11) << "an offer of another product";
    auto broken = sound;
    broken.identifier = "other";
    EXPECT_EQ(pay(broken), 11);
    for (auto field : {&SKPaymentDiscount::Fields::identifier, &SKPaymentDiscount::Fields::keyIdentifier,
                       &SKPaymentDiscount::Fields::nonce, &SKPaymentDiscount::Fields::signature}) {
        broken = sound;
        broken.*field = "";
        EXPECT_EQ(pay(broken), 13);
    }
}

} // namespace
} // namespace trelundo
