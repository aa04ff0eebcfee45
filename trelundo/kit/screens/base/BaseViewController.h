#pragma once

#include "trelundo/kit/screens/base/BaseViewControllerDelegate.h"
#include "trelundo/platform/foundation/Lazy.h"
#include "trelundo/platform/foundation/NSCoder.h"
#include "trelundo/platform/foundation/NSError.h"
#include "trelundo/platform/storekit/SKPayment.h"
#include "trelundo/platform/storekit/SKProduct.h"
#include "trelundo/platform/uikit/controllers/UIViewController.h"
#include "trelundo/platform/uikit/controls/UIActivityIndicatorView.h"
#include "trelundo/platform/uikit/controls/UIButton.h"

namespace trelundo {

/// Base of every paywall and offer screen: the analytics context, the progress overlay, the purchase, restore
/// and link actions with their alerts, and the way out with its two notifications. The host creates a screen,
/// sets its properties and presents it; whoever presents it owns it.
class BaseViewController : public UIViewController {
public:
    /// Posted without object and user information before a screen goes away by itself, and once it is gone.
    // NOLINTBEGIN(readability-identifier-naming): hosts know notifications by these names.
    static constexpr char const* TrelundoKitPremiumWillDismissNotificationName =
        "TrelundoKitPremiumWillDismissNotificationName";
    static constexpr char const* TrelundoKitPremiumDidDismissNotificationName =
        "TrelundoKitPremiumDidDismissNotificationName";
    // NOLINTEND(readability-identifier-naming)

    /// Whether the main screen is at most 1136 pixels high, in portrait.
    static bool isMainScreenSmall();

    BaseViewController();
    explicit BaseViewController(NSCoder const& /*archive*/)
        : BaseViewController() {}

    /// Whether the main screen was at most 1136 pixels high when this screen was created.
    bool isSmallScreen() const { return isSmallScreen_; }
    void setSmallScreen(bool small) { isSmallScreen_ = small; }
    /// Where the host opened the paywall from. "AppStore" takes part in a purchase promoted in the store.
    std::string const& source() const { return source_; }
    void setSource(std::string source) { source_ = std::move(source); }
    /// The host's name of this paywall configuration.
    std::string const& premiumId() const { return premiumId_; }
    void setPremiumId(std::string premiumId) { premiumId_ = std::move(premiumId); }
    /// The host's test tag, which chooses among texts.
    std::string const& abTest() const { return abTest_; }
    void setABTest(std::string abTest) { abTest_ = std::move(abTest); }
    Ref<BaseViewControllerDelegate> delegate() const { return delegate_.lock(); }
    void setDelegate(Weak<BaseViewControllerDelegate> delegate) { delegate_ = std::move(delegate); }
    /// True: introductory prices count as absent.
    bool introductoryPriceWasOffered() const { return introductoryPriceWasOffered_; }
    void setIntroductoryPriceWasOffered(bool offered) { introductoryPriceWasOffered_ = offered; }

    /// Turns while the store works. Another one takes its place before the overlay is first used.
    Ref<UIActivityIndicatorView> const& activityIndicatorView() const { return activityIndicatorView_; }
    void setActivityIndicatorView(Ref<UIActivityIndicatorView> view) {
        activityIndicatorView_ = std::move(view);
    }
    /// The progress overlay, hidden at first; a screen lays it over its content.
    Ref<UIView> const& dimmView();

    /// Buys. Without a payment nothing is added to the queue, but the outcome of the purchase that the store
    /// has begun is handled like one begun here.
    void purchasePayment(Ref<SKPayment> payment);
    void restorePurchases(UIControl& sender);
    void userAgreement(UIControl& sender);
    void privacyPolicy(UIControl& sender);
    /// The close action of every screen that tells of its going: will-dismiss, animated dismissal,
    /// did-dismiss.
    void close();

    void viewDidLoad() override;
    void viewDidAppear(bool animated) override;
    UIStatusBarStyle preferredStatusBarStyle() const override { return UIStatusBarStyle::lightContent; }
    bool prefersHomeIndicatorAutoHidden() const override { return true; }

protected:
    /// Buys `product` in the name of the host's account, with `discount` unless it is null; null: does
    /// nothing.
    void purchase(Ref<SKProduct> const& product, Ref<SKPaymentDiscount> discount = nullptr);
    /// Adds `button` in the top leading corner of the safe area, `inset` points away from its edges.
    void addCloseButton(Ref<UIButton> const& button, CGPoint inset = {});
    /// Adds `links` in the middle of the safe area's foot, and gives the view that spans the foot.
    Ref<UIView> addTerms(Ref<UIView> const& links);
    /// Lays the progress overlay over everything added so far, edge to edge.
    void addDimmView();

private:
    /// What an alert's action does; the screen is null when it has gone meanwhile.
    using AlertAction = std::function<void(BaseViewController* screen)>;
    struct Choice {
        char const* title;
        AlertAction action = nullptr;
        bool isPreferred = false;
    };
    struct Failure {
        char const* title;
        AlertAction tryAgain;
    };
    static void hideProgress(BaseViewController* screen);

    void setProgressShown(bool shown);
    /// Whether this screen is arriving, or an alert over it is coming or going: no time to leave.
    bool isTransitionUnderWay() const;
    void leave();
    void leaveIfPostponed();
    void presentAlert(std::string const& title, std::string const& message,
                      std::vector<Choice> const& choices);
    void presentFailure(Failure failure);
    void purchaseDidEnd(bool success, Ref<SKPayment> const& payment, bool deferred,
                        Ref<NSError> const& error);
    void restore();
    void restoreDidEnd(bool success, Ref<NSError> const& error);
    std::string pendingApprovalMessage() const;

    bool isSmallScreen_;
    std::string source_;
    std::string premiumId_;
    std::string abTest_;
    Weak<BaseViewControllerDelegate> delegate_;
    bool introductoryPriceWasOffered_ = false;
    bool isLeavingPostponed_ = false;
    Ref<UIActivityIndicatorView> activityIndicatorView_;
    Lazy<UIView> dimmView_{"dimmView"};
};

} // namespace trelundo
