#include "trelundo/kit/screens/base/BaseViewController.h"

#include "trelundo/kit/common/Texts.h"
#include "trelundo/kit/common/internal/ViewFactory.h"
#include "trelundo/kit/store/PremiumManager.h"
#include "trelundo/platform/foundation/DispatchQueue.h"
#include "trelundo/platform/foundation/NotificationCenter.h"
#include "trelundo/platform/foundation/Strings.h"
#include "trelundo/platform/uikit/controllers/UIAlertController.h"
#include "trelundo/platform/uikit/layout/NSLayoutAnchor.h"
#include "trelundo/platform/uikit/layout/UILayoutGuide.h"
#include "trelundo/platform/uikit/views/UIScreen.h"

#include <utility>

namespace trelundo {

namespace {

constexpr double smallScreenPixelHeight = 1136;
constexpr char const* restoreSource = "Buy"; // restores are never reported under the screen's own source
constexpr char const* failureMessage =
    "Please try again. If the problem presists, let us know and we'll get right on it.";

void logEvent(std::string const& name, std::string const& source) {
    if (auto delegate = PremiumManager::sharedInstance().delegate())
        delegate->logEvent(name, {{"Source", source}});
}

} // namespace

bool BaseViewController::isMainScreenSmall() {
    return UIScreen::main().nativeBounds().height() <= smallScreenPixelHeight;
}

BaseViewController::BaseViewController()
    : isSmallScreen_(isMainScreenSmall())
    , activityIndicatorView_(named("activityIndicatorView",
                                   make<UIActivityIndicatorView>(UIActivityIndicatorViewStyle::large))) {
    activityIndicatorView_->setTranslatesAutoresizingMaskIntoConstraints(false);
}

void BaseViewController::viewDidLoad() {
    UIViewController::viewDidLoad();
    if (source_ == "AppStore") purchasePayment(nullptr);
}

Ref<UIView> const& BaseViewController::dimmView() {
    return dimmView_([this] {
        auto view = usingAutoLayout(make<UIView>());
        view->setBackgroundColor(UIColor::gray(0.0, 0.7));
        view->setHidden(true);
        view->addSubview(activityIndicatorView_);
        activate({
            activityIndicatorView_->centerXAnchor() == view->centerXAnchor(),
            activityIndicatorView_->centerYAnchor() == view->centerYAnchor(),
        });
        return view;
    });
}

void BaseViewController::addCloseButton(Ref<UIButton> const& button, CGPoint inset) {
    view()->addSubview(button);
    auto const safeArea = view()->safeAreaLayoutGuide();
    activate({
        button->topAnchor() == safeArea->topAnchor() + inset.y,
        button->leadingAnchor() == safeArea->leadingAnchor() + inset.x,
    });
}

Ref<UIView> BaseViewController::addTerms(Ref<UIView> const& links) {
    auto const terms = named("termsStackView", makeVerticalStack({links}));
    terms->setAlignment(UIStackViewAlignment::center);
    view()->addSubview(terms);
    auto const safeArea = view()->safeAreaLayoutGuide();
    activate({
        terms->leadingAnchor() == safeArea->leadingAnchor(),
        terms->trailingAnchor() == safeArea->trailingAnchor(),
        terms->bottomAnchor() == safeArea->bottomAnchor(),
    });
    return terms;
}

void BaseViewController::addDimmView() {
    view()->addSubview(dimmView());
    pinEdges(*dimmView(), *view());
}

void BaseViewController::setProgressShown(bool shown) {
    if (shown)
        activityIndicatorView_->startAnimating();
    else
        activityIndicatorView_->stopAnimating();
    dimmView()->setHidden(!shown);
}

void BaseViewController::close() {
    NotificationCenter::defaultCenter().post(TrelundoKitPremiumWillDismissNotificationName);
    // A dismissal in the middle of another transition would be dropped, and the screen would stay for good.
    isLeavingPostponed_ = isTransitionUnderWay();
    if (!isLeavingPostponed_) leave();
}

bool BaseViewController::isTransitionUnderWay() const {
    auto const above = presentedViewController();
    return isBeingPresented() || (above && (above->isBeingPresented() || above->isBeingDismissed()));
}

void BaseViewController::leave() {
    // A screen under an alert would only dismiss the alert: its presenter takes both away.
    auto& dismissing =
        presentedViewController() && presentingViewController() ? *presentingViewController() : *this;
    dismissing.dismiss(
        true, [] { NotificationCenter::defaultCenter().post(TrelundoKitPremiumDidDismissNotificationName); });
}

void BaseViewController::leaveIfPostponed() {
    if (!isTransitionUnderWay() && std::exchange(isLeavingPostponed_, false)) leave();
}

void BaseViewController::viewDidAppear(bool animated) {
    UIViewController::viewDidAppear(animated);
    if (!isLeavingPostponed_) return;
    // The transition ends after this callback.
    DispatchQueue::main().async([weak = Weak<BaseViewController>{this}] {
        if (auto const screen = weak.lock()) screen->leaveIfPostponed();
    });
}

void BaseViewController::purchase(Ref<SKProduct> const& product, Ref<SKPaymentDiscount> discount) {
    if (!product) return;
    auto payment = make<SKMutablePayment>(*product);
    payment->setApplicationUsername(PremiumManager::sharedInstance().applicationUsername());
    if (discount) payment->setPaymentDiscount(std::move(discount));
    purchasePayment(payment);
}

void BaseViewController::userAgreement(UIControl& /*sender*/) {
    if (auto host = delegate()) host->userAgreement();
}

void BaseViewController::privacyPolicy(UIControl& /*sender*/) {
    if (auto host = delegate()) host->privacyPolicy();
}

void BaseViewController::purchasePayment(Ref<SKPayment> payment) {
    bool const isStarted = PremiumManager::sharedInstance().purchase({
        .payment = std::move(payment),
        .source = source_,
        .screen = className(),
        .premiumId = premiumId_,
        .abTest = abTest_,
        .completion =
            [weak = Weak<BaseViewController>{this}](bool success, Ref<SKPayment> const& paid, bool deferred,
                                                    Ref<NSError> const& error) {
                DispatchQueue::main().async([=] {
                    if (auto screen = weak.lock()) screen->purchaseDidEnd(success, paid, deferred, error);
                });
            },
    });
    if (isStarted)
        setProgressShown(true);
    else
        presentAlert(Texts::text("Purchase"), Texts::text("In-app purchases are not allowed."),
                     {{.title = "OK", .isPreferred = true}});
}

void BaseViewController::purchaseDidEnd(bool success, Ref<SKPayment> const& payment, bool deferred,
                                        Ref<NSError> const& error) {
    if (success) {
        setProgressShown(false);
        close();
    } else if (deferred) {
        presentAlert({}, pendingApprovalMessage(),
                     {{.title = "OK", .action = hideProgress, .isPreferred = true}});
    } else if (!error) {
        // Without an error there is nothing to tell: the overlay stays until the user leaves the screen.
    } else if (PremiumManager::isCancellation(*error)) {
        setProgressShown(false);
    } else {
        presentFailure({.title = "Purchase Failed", .tryAgain = [payment](BaseViewController* screen) {
                            logEvent("Purchase Try Again", screen ? screen->source_ : std::string{});
                            if (screen) screen->purchasePayment(payment);
                        }});
    }
}

std::string BaseViewController::pendingApprovalMessage() const {
    auto const host = delegate();
    return replacingOccurrences(Texts::text("Thank you! You can continue to use Darno while your purchase is "
                                            "pending an approval from your parent."),
                                "Darno", host ? host->appName().value_or("") : "");
}

void BaseViewController::restorePurchases(UIControl& /*sender*/) { restore(); }

void BaseViewController::restore() {
    setProgressShown(true);
    PremiumManager::sharedInstance().restore(
        restoreSource, [weak = Weak<BaseViewController>{this}](bool success, Ref<NSError> const& error) {
            DispatchQueue::main().async([=] {
                if (auto screen = weak.lock()) screen->restoreDidEnd(success, error);
            });
        });
}

void BaseViewController::restoreDidEnd(bool success, Ref<NSError> const& error) {
    if (success) {
        setProgressShown(false);
        close();
    } else if (!error) {
        // As with purchases: the overlay stays.
    } else if (PremiumManager::isCancellation(*error)) {
        setProgressShown(false);
    } else {
        presentFailure({.title = "Restoration Failed", .tryAgain = [](BaseViewController* screen) {
                            logEvent("Restore Try Again", restoreSource);
                            if (screen) screen->restore();
                        }});
    }
}

void BaseViewController::presentFailure(Failure failure) {
    auto const contactUs = [subject = failure.title](BaseViewController* screen) {
        hideProgress(screen);
        if (!screen) return;
        if (auto host = screen->delegate()) host->contactUs(subject, strong(*screen));
    };
    presentAlert(Texts::text(failure.title), Texts::text(failureMessage),
                 {{.title = "Try Again", .action = std::move(failure.tryAgain), .isPreferred = true},
                  {.title = "Contact Us", .action = contactUs},
                  {.title = "Not Now", .action = hideProgress}});
}

void BaseViewController::hideProgress(BaseViewController* screen) {
    if (screen) screen->setProgressShown(false);
}

void BaseViewController::presentAlert(std::string const& title, std::string const& message,
                                      std::vector<Choice> const& choices) {
    auto alert = make<UIAlertController>(title, message, UIAlertControllerStyle::alert);
    for (auto const& choice : choices) {
        auto const perform = [weak = Weak<BaseViewController>{this}, action = choice.action](UIAlertAction&) {
            auto const screen = weak.lock();
            if (action) action(screen.get());
            if (screen) screen->leaveIfPostponed();
        };
        auto button =
            make<UIAlertAction>(Texts::text(choice.title), UIAlertActionStyle::defaultStyle, perform);
        alert->addAction(button);
        if (choice.isPreferred) alert->setPreferredAction(button);
    }
    present(alert, true, [weak = Weak<BaseViewController>{this}] {
        if (auto const screen = weak.lock()) screen->leaveIfPostponed();
    });
}

} // namespace trelundo
