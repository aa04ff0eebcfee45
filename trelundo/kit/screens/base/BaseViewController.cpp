#include "trelundo/kit/screens/base/BaseViewController.h"

#include "trelundo/platform/foundation/DispatchQueue.h"
#include "trelundo/platform/foundation/NotificationCenter.h"
#include "trelundo/platform/uikit/layout/NSLayoutAnchor.h"
#include "trelundo/platform/uikit/layout/UILayoutGuide.h"
#include "trelundo/platform/uikit/views/UIScreen.h"

#include <utility>

namespace trelundo {

namespace {
constexpr double smallScreenPixelHeight = 1136;
}

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
        auto view = make<UIView>();
        view->setTranslatesAutoresizingMaskIntoConstraints(false);
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

void BaseViewController::addTerms(Ref<UIView> const& links) {
    view()->addSubview(links);
    auto const safeArea = view()->safeAreaLayoutGuide();
    activate({
        links->leadingAnchor() == safeArea->leadingAnchor(),
        links->trailingAnchor() == safeArea->trailingAnchor(),
        links->bottomAnchor() == safeArea->bottomAnchor(),
    });
}

void BaseViewController::addDimmView() {
    view()->addSubview(dimmView());
    activate({
        dimmView()->topAnchor() == view()->topAnchor(),
        dimmView()->leadingAnchor() == view()->leadingAnchor(),
        dimmView()->trailingAnchor() == view()->trailingAnchor(),
        dimmView()->bottomAnchor() == view()->bottomAnchor(),
    });
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

Ref<SKPayment> BaseViewController::makePayment(SKProduct const& product, Ref<SKPaymentDiscount> discount) {
    auto payment = make<SKMutablePayment>(product);
    payment->setApplicationUsername(PremiumManager::sharedInstance().applicationUsername());
    if (discount) payment->setPaymentDiscount(std::move(discount));
    return payment;
}

void BaseViewController::userAgreement(UIControl& /*sender*/) {
    if (auto host = delegate()) host->userAgreement();
}

void BaseViewController::privacyPolicy(UIControl& /*sender*/) {
    if (auto host = delegate()) host->privacyPolicy();
}

} // namespace trelundo
