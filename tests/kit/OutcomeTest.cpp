#include "tests/support/Products.h"
#include "tests/support/ScreenFixture.h"
#include "trelundo/kit/screens/subscription/PremiumV2ViewController.h"

#include <gmock/gmock.h>

namespace trelundo::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Kind = PaywallOutcome::Kind;

class Witness : public NSObject, public PaywallObserver {
public:
    void paywallShown(PaywallContext const& context) override {
        lines.push_back("shown " + context.screen + "/" + context.source + "/" + context.premiumId + "/" +
                        context.abTest);
    }
    void planSelected(PaywallContext const& /*context*/, SKProduct const& product) override {
        lines.push_back("selected " + product.productIdentifier());
    }
    void continuePressed(PaywallContext const& /*context*/, Ref<SKProduct> const& product) override {
        lines.push_back("continue " + (product ? product->productIdentifier() : "without a plan"));
    }
    void paywallEnded(PaywallContext const& context, PaywallOutcome const& outcome) override {
        lines.push_back(context.screen + " ended " + std::to_string(static_cast<int>(outcome.kind)));
    }
    std::vector<std::string> lines;
};

class OutcomeTest : public ScreenFixture {
protected:
    OutcomeTest() {
        store.catalogue = {{"yearly", yearly()}, {"monthly", monthly()}};
        PremiumManager::sharedInstance().setState(PremiumManagerState::notStarted);
        PremiumManager::sharedInstance().start({"yearly", "monthly"});
        RunLoop::main().runUntilIdle();
        screen = paywall<PremiumV2ViewController>(PremiumManager::sharedInstance().products());
        screen->setOutcomeHandler([this](PaywallOutcome const& outcome) {
            EXPECT_FALSE(host->presentedViewController()) << "told before the screen had gone";
            outcomes.push_back(outcome);
        });
        show(screen);
    }
    ~OutcomeTest() override {
        if (screen) screen->setOutcomeHandler(nullptr);
    }

    /// What was told, once for all, when everything has come to rest.
    PaywallOutcome outcome() {
        shell.advance(1);
        EXPECT_EQ(outcomes.size(), 1U);
        return outcomes.empty() ? PaywallOutcome{} : outcomes.front();
    }

    Ref<PremiumV2ViewController> screen;
    std::vector<PaywallOutcome> outcomes;
};

TEST_F(OutcomeTest, APurchaseNamesItsProductAndTransaction) {
    tap("continueButton");
    auto report = FakeStore::transaction("7", SKPaymentTransactionState::purchased);
    report.payment = store.payments.back();
    report.transactionIdentifier = "1007";
    report.receipt = "signed";
    store.tell({report});
    auto const told = outcome();
    EXPECT_EQ(told.kind, Kind::purchased);
    EXPECT_EQ(told.product, screen->products()[0]);
    EXPECT_EQ(told.transaction->transactionIdentifier(), "1007");
    EXPECT_EQ(told.transaction->transactionReceipt(), "signed");
}

TEST_F(OutcomeTest, ARestoreListsWhatCameBackAndNothingAsNothing) {
    for (bool const hasAny : {true, false}) {
        outcomes.clear();
        screen->restorePurchases(*find<UIControl>("unlockButton"));
        if (hasAny) {
            store.tell({FakeStore::transaction("1", SKPaymentTransactionState::restored),
                        FakeStore::transaction("2", SKPaymentTransactionState::restored)});
            RunLoop::main().runUntilIdle();
        }
        store.listener->restoreFinished();
        auto const told = outcome();
        EXPECT_EQ(told.kind, Kind::restored);
        EXPECT_EQ(told.restored.size(), hasAny ? 2U : 0U);
        show(screen);
    }
}

TEST_F(OutcomeTest, WaitingForApprovalIsMoreThanClosedUntilItIsDeclined) {
    for (bool const isDeclined : {false, true}) {
        outcomes.clear();
        tap("continueButton");
        store.report(SKPaymentTransactionState::deferred);
        chooseFirstAction();
        if (isDeclined)
            store.report(SKPaymentTransactionState::failed, makeStoreError(SKErrorCode::paymentCancelled));
        tap("closeButton");
        EXPECT_EQ(outcome().kind, isDeclined ? Kind::closed : Kind::waitingForApproval);
        EXPECT_EQ(outcomes.front().product, isDeclined ? nullptr : screen->products()[0]);
        show(screen);
    }
}

TEST_F(OutcomeTest, AHostThatTakesTheScreenAwayHearsThat) {
    host->dismiss(true);
    EXPECT_EQ(outcome().kind, Kind::takenAway);
    outcomes.clear();
    show(screen);
    screen = nullptr;
    shown = nullptr;
    shell.window().setRootViewController(make<UIViewController>());
    EXPECT_EQ(outcome().kind, Kind::takenAway);
}

TEST_F(OutcomeTest, AScreenThatIsOnlyCoveredHasNotEnded) {
    auto const cover = make<UIViewController>();
    cover->setModalPresentationStyle(UIModalPresentationStyle::fullScreen);
    screen->present(cover, false);
    shell.advance(0.1);
    screen->dismiss(false);
    shell.advance(0.1);
    EXPECT_THAT(outcomes, IsEmpty());
    tap("closeButton");
    EXPECT_EQ(outcome().kind, Kind::closed);
}

TEST_F(OutcomeTest, AnObserverHearsWhatTheUserDoesWithTheScreensContext) {
    auto const witness = make<Witness>();
    BaseViewController::setObserver(witness);
    takeAway();
    witness->lines.clear();
    screen->setSource("Settings");
    screen->setPremiumId("spring");
    screen->setABTest("V2_A1");
    show(screen);
    tap(*planButton(1));
    tap("continueButton");
    tap("closeButton");
    shell.advance(1);
    BaseViewController::setObserver(nullptr);
    EXPECT_THAT(witness->lines,
                ElementsAre("shown PremiumV2ViewController/Settings/spring/V2_A1", "selected monthly",
                            "continue monthly", "PremiumV2ViewController ended 3"));
}

} // namespace
} // namespace trelundo::test
