#include "screens/base/BaseViewController.h"
#include "screens/subscription/PremiumViewController.h"
#include "tests/support/Products.h"
#include "tests/support/ScreenFixture.h"

namespace trelundo::test {
namespace {

class BaseScreenTest : public ScreenFixture {
protected:
    Ref<SKPayment> payment(Ref<SKProduct> const& product) { return make<SKMutablePayment>(*product); }
};

TEST_F(BaseScreenTest, AHostMayBringItsOwnIndicator) {
    auto const screen = make<BaseViewController>();
    auto const own = make<UIActivityIndicatorView>(UIActivityIndicatorViewStyle::medium);
    screen->setActivityIndicatorView(own);
    EXPECT_EQ(own->superview(), screen->dimmView().get());
    EXPECT_EQ(screen->dimmView(), screen->dimmView());
    screen->purchasePayment(payment(yearly()));
    EXPECT_TRUE(own->isAnimating());
    EXPECT_FALSE(screen->dimmView()->isHidden());
}

TEST_F(BaseScreenTest, OnlyTheLastScreenHearsOfThePurchase) {
    auto const first = make<BaseViewController>();
    auto const last = make<BaseViewController>();
    first->purchasePayment(payment(yearly()));
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
    screen->purchasePayment(payment(yearly()));
    screen = nullptr;
    EXPECT_FALSE(weak.lock()) << "nobody else holds it";
    store.report(SKPaymentTransactionState::purchased);
    EXPECT_EQ(store.finished.size(), 1U);
}

TEST_F(BaseScreenTest, TheFirstPaywallKeepsTheLayoutOfItsFirstSizeClass) {
    auto const shownOn = [this](bool landscape) {
        resize("phone-428x926", landscape);
        auto screen = make<PremiumViewController>();
        screen->setProducts({yearly(), monthly()});
        screen->setFeatures({{"All Templates", "none"}});
        return show(screen);
    };
    auto const hasWideRows = [this] { return planButton(0)->bounds().width() != 400; };
    shownOn(false);
    EXPECT_TRUE(hasWideRows());
    resize("phone-428x926", true);
    EXPECT_TRUE(hasWideRows());
    host->dismiss(false);
    shell.advance(0.1);

    shownOn(true);
    EXPECT_FALSE(hasWideRows());
    resize("phone-428x926");
    EXPECT_FALSE(hasWideRows());
}

} // namespace
} // namespace trelundo::test
