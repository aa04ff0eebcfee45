#include "tests/support/Products.h"
#include "tests/support/ScopedState.h"
#include "tests/support/ScreenFixture.h"
#include "trelundo/kit/screens/base/BaseViewController.h"
#include "trelundo/kit/screens/offer/OfferV3ViewController.h"
#include "trelundo/kit/screens/subscription/PremiumV4ViewController.h"
#include "trelundo/kit/screens/subscription/PremiumViewController.h"
#include "trelundo/platform/foundation/NotificationCenter.h"
#include "trelundo/platform/storekit/SKError.h"
#include "trelundo/platform/uikit/controllers/UIApplication.h"

#include <gmock/gmock.h>

namespace trelundo::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

class BaseScreenTest : public ScreenFixture {
protected:
    BaseScreenTest() {
        token_ = NotificationCenter::defaultCenter().addObserver(
            std::nullopt, nullptr, [this](Notification const& posted) { heard.push_back(posted.name); });
    }
    ~BaseScreenTest() override { NotificationCenter::defaultCenter().removeObserver(token_); }

    static void buy(BaseViewController& screen, Ref<SKProduct> const& product = yearly()) {
        screen.purchasePayment(make<SKMutablePayment>(*product));
    }
    /// Whether the screen goes within a second, and tells of it once before and once after.
    void expectToLeave() {
        EXPECT_TRUE(host->presentedViewController()) << "a transition is still under way";
        shell.advance(1);
        EXPECT_FALSE(host->presentedViewController());
        expectToHaveLeft();
    }
    void expectToHaveLeft() {
        EXPECT_THAT(heard, ElementsAre(BaseViewController::TrelundoKitPremiumWillDismissNotificationName,
                                       BaseViewController::TrelundoKitPremiumDidDismissNotificationName));
    }

    std::vector<std::string> heard;

private:
    Ref<NotificationCenter::Token> token_;
};

TEST_F(BaseScreenTest, AHostMayBringItsOwnIndicator) {
    auto const screen = make<BaseViewController>();
    auto const own = make<UIActivityIndicatorView>(UIActivityIndicatorViewStyle::medium);
    screen->setActivityIndicatorView(own);
    auto const dimmed = screen->dimmView();
    EXPECT_EQ(own->superview(), dimmed.get());
    buy(*screen);
    EXPECT_TRUE(own->isAnimating());
    EXPECT_FALSE(dimmed->isHidden());
}

TEST_F(BaseScreenTest, OnlyTheLastScreenHearsOfThePurchase) {
    auto const first = make<BaseViewController>();
    auto const last = make<BaseViewController>();
    buy(*first);
    last->setSource("AppStore");
    show(last);
    EXPECT_FALSE(last->dimmView()->isHidden()) << "waits for what the store has begun";
    store.report(SKPaymentTransactionState::failed, makeStoreError(SKErrorCode::paymentCancelled));
    EXPECT_TRUE(last->dimmView()->isHidden());
    EXPECT_FALSE(first->dimmView()->isHidden());
}

TEST_F(BaseScreenTest, TheEndOfAPurchaseReachesAScreenThatIsGone) {
    auto screen = make<BaseViewController>();
    Weak<BaseViewController> const weak{screen};
    buy(*screen);
    screen = nullptr;
    EXPECT_FALSE(weak.lock()) << "nobody else holds it";
    store.report(SKPaymentTransactionState::purchased);
    EXPECT_EQ(store.finished.size(), 1U);
}

TEST_F(BaseScreenTest, APurchaseThatEndsDuringATransitionTakesTheScreenAway) {
    struct Row {
        char const* transition;
        bool isShown;
        std::function<void(BaseViewController&)> begin;
    };
    Row const rows[] = {
        {"it arrives", false, [this](auto& screen) { host->present(strong(screen), true); }},
        {"the host lays over it", true, [](auto& screen) { screen.present(make<UIViewController>(), true); }},
        {"the host takes it away", true, [this](auto&) { host->dismiss(true); }}};
    for (auto const& [transition, isShown, begin] : rows) {
        SCOPED_TRACE(transition);
        heard.clear();
        auto const screen = make<BaseViewController>();
        if (isShown) show(screen);
        buy(*screen);
        begin(*screen);
        shell.advance(0.1);
        store.report(SKPaymentTransactionState::purchased);
        shell.advance(0.1);
        expectToLeave();
    }
}

TEST_F(BaseScreenTest, AnApprovalWhileTheAlertComesOrGoesIsNotLost) {
    constexpr double never = -1; // else seconds after which the user taps OK
    for (double const chosenAfter : {never, 0.0, 1.0}) {
        heard.clear();
        auto const screen = show(make<BaseViewController>());
        buy(*screen);
        store.report(SKPaymentTransactionState::deferred);
        shell.advance(0.1);
        auto const alert = cast<UIAlertController>(screen->presentedViewController());
        if (chosenAfter != never) {
            shell.advance(chosenAfter);
            alert->performAction(*alert->actions().front());
            shell.advance(0.05);
        }
        ASSERT_TRUE(alert->isBeingPresented() || alert->isBeingDismissed());
        store.report(SKPaymentTransactionState::purchased);
        expectToLeave();
    }
}

TEST_F(BaseScreenTest, AWindowThatGoesTakesALeavingScreenAlong) {
    auto screen = show(make<BaseViewController>());
    screen->close();
    shell.advance(0.1);
    screen = nullptr;
    shown = nullptr;
    shell.window().setRootViewController(make<UIViewController>());
    shell.advance(0.1);
    expectToHaveLeft();
}

TEST_F(BaseScreenTest, AScreenThatNobodyPresentedHasLeftInALaterTurn) {
    auto const screen = make<BaseViewController>();
    screen->close();
    EXPECT_EQ(heard.size(), 1U);
    RunLoop::main().runUntilIdle();
    expectToHaveLeft();
}

TEST_F(BaseScreenTest, NothingIsBoughtOnAScreenThatIsLeaving) {
    auto const screen = paywall<PremiumV4ViewController>({yearly(), monthly()});
    screen->setSelectedProductIndex(1);
    show(screen);
    buy(*screen, monthly());
    store.report(SKPaymentTransactionState::deferred);
    chooseFirstAction();
    tap("continueButton"); // offers the yearly plan
    shell.advance(0.1);
    store.report(SKPaymentTransactionState::purchased);
    auto const upgrade = cast<UIAlertController>(screen->presentedViewController());
    upgrade->performAction(*upgrade->preferredAction());
    buy(*screen);
    screen->restorePurchases(*find<UIControl>("unlockButton"));
    expectToLeave();
    EXPECT_EQ(store.payments.size(), 1U);
    EXPECT_THAT(store.calls, Not(Contains("restore")));
}

TEST_F(BaseScreenTest, AMissingPictureIsToldOnceWithItsScreen) {
    RecordedWarnings const warnings;
    for (int turn = 0; turn < 2; ++turn) {
        auto const screen = paywall<PremiumV4ViewController>({yearly()});
        screen->setFeatures({{"All Templates", "lost tile"}});
        show(screen);
        takeAway();
        auto const offer = make<OfferV3ViewController>();
        offer->setBackgroundImageName("lost ground");
        show(offer);
        takeAway();
    }
    for (auto const* told : {"PremiumV4ViewController: there is no picture \"lost tile\" in the main bundle",
                             "OfferV3ViewController: there is no picture \"lost ground\" in the main bundle"})
        EXPECT_THAT(warnings.lines, Contains(told).Times(1));
}

TEST_F(BaseScreenTest, TheLayoutFollowsTheUsersLanguagesAlone) {
    Locale::setPreferredLanguages({"ckb", "ar", "en"});
    auto const screen = show(make<OfferV3ViewController>());
    auto const isMirrored = [&] { return find("closeButton")->frame().midX() > 160; };
    EXPECT_TRUE(isMirrored()) << "the kit speaks Arabic, but no Kurdish";
    Locale::setPreferredLanguages({"ckb", "en"});
    shell.advance(0.1);
    EXPECT_FALSE(isMirrored());
    UIApplication::shared().setUserInterfaceLayoutDirection(UIUserInterfaceLayoutDirection::rightToLeft);
    EXPECT_TRUE(screen->view()->isRightToLeft());
    UIApplication::shared().setUserInterfaceLayoutDirection(std::nullopt);
    EXPECT_FALSE(screen->view()->isRightToLeft());
}

TEST_F(BaseScreenTest, TheFirstPaywallKeepsTheLayoutOfItsFirstSizeClass) {
    for (bool const startsInLandscape : {false, true}) {
        resize("phone-428x926", startsInLandscape);
        show(paywall<PremiumViewController>({yearly(), monthly()}));
        for (bool const isLandscape : {startsInLandscape, !startsInLandscape}) {
            resize("phone-428x926", isLandscape);
            EXPECT_EQ(planButton(0)->bounds().width() == 400, startsInLandscape) << isLandscape;
        }
        takeAway();
    }
}

} // namespace
} // namespace trelundo::test
