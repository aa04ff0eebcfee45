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

#include <algorithm>
#include <utility>

namespace trelundo {

namespace {

constexpr double smallScreenPixelHeight = 1136;
constexpr char const* restoreSource = "Buy"; // restores are never reported under the screen's own source
constexpr char const* failureMessage =
    "Please try again. If the problem presists, let us know and we'll get right on it.";

Weak<PaywallObserver> processObserver;

Ref<SKProduct> loadedProduct(SKPayment const& payment) {
    auto const& products = PremiumManager::sharedInstance().products();
    auto const found =
        std::ranges::find(products, payment.productIdentifier(), &SKProduct::productIdentifier);
    return found == products.end() ? nullptr : *found;
}

void logEvent(std::string const& name, std::string const& source) {
    if (auto delegate = PremiumManager::sharedInstance().delegate())
        delegate->logEvent(name, {{"Source", source}});
}

} // namespace

bool BaseViewController::isMainScreenSmall() {
    return UIScreen::main().nativeBounds().height() <= smallScreenPixelHeight;
}

void BaseViewController::setObserver(Weak<PaywallObserver> observer) {
    processObserver = std::move(observer);
}

BaseViewController::BaseViewController()
    : isSmallScreen_(isMainScreenSmall())
    , activityIndicatorView_(named("activityIndicatorView",
                                   make<UIActivityIndicatorView>(UIActivityIndicatorViewStyle::large))) {
    activityIndicatorView_->setTranslatesAutoresizingMaskIntoConstraints(false);
    Texts::kitBundle(); // makes the layout direction that of the kit's language
}

BaseViewController::~BaseViewController() {
    didLeave();
    endPresentation();
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

// Leaving

void BaseViewController::close() {
    if (isLeaving_) return;
    isLeaving_ = wasClosed_ = true;
    NotificationCenter::defaultCenter().post(TrelundoKitPremiumWillDismissNotificationName);
    if (presentingViewController()) return leave();
    DispatchQueue::main().async([weak = Weak<BaseViewController>{this}] {
        if (auto const screen = weak.lock()) screen->leave();
    });
}

/// Tries again after every transition until the screen has gone, for a dismissal in the middle of another
/// transition would be dropped.
void BaseViewController::leave() {
    auto* const presenter = presentingViewController();
    if (!presenter) return didLeave();
    afterNextTransition([weak = Weak<BaseViewController>{this}] {
        if (auto const screen = weak.lock()) screen->leave();
    });
    // By the presenter, because a screen under an alert or a sheet would only dismiss that one.
    if (!presenter->isTransitionUnderWay()) presenter->dismiss(true);
}

void BaseViewController::didLeave() {
    if (!std::exchange(isLeaving_, false)) return;
    NotificationCenter::defaultCenter().post(TrelundoKitPremiumDidDismissNotificationName);
    if (!isOnScreen()) endPresentation();
}

bool BaseViewController::isOnScreen() {
    return presentingViewController() || presentedViewController() || (isViewLoaded() && view()->window());
}

// The presentation and what comes of it

void BaseViewController::viewWillAppear(bool animated) {
    UIViewController::viewWillAppear(animated);
    isPresentationOpen_ = true;
    name_ = className();
}

void BaseViewController::viewDidAppear(bool animated) {
    UIViewController::viewDidAppear(animated);
    if (std::exchange(wasShown_, true)) return;
    if (auto const heard = processObserver.lock()) heard->paywallShown(context());
}

void BaseViewController::viewDidDisappear(bool animated) {
    UIViewController::viewDidDisappear(animated);
    bool const isCovered = presentingViewController() || presentedViewController();
    if (!isCovered && !isLeaving_) endPresentation();
}

void BaseViewController::endPresentation() {
    if (!std::exchange(isPresentationOpen_, false)) return;
    auto const kind = wasClosed_ ? PaywallOutcome::Kind::closed : PaywallOutcome::Kind::takenAway;
    auto const outcome = std::exchange(earned_, std::nullopt).value_or(PaywallOutcome{.kind = kind});
    wasShown_ = wasClosed_ = false;
    if (auto const handler = outcomeHandler_) handler(outcome);
    if (auto const heard = processObserver.lock()) heard->paywallEnded(context(), outcome);
}

PaywallContext BaseViewController::context() const {
    return {.screen = name_, .source = source_, .premiumId = premiumId_, .abTest = abTest_};
}

void BaseViewController::reportPlanSelected(SKProduct const& product) const {
    if (auto const heard = processObserver.lock()) heard->planSelected(context(), product);
}

void BaseViewController::reportContinue(Ref<SKProduct> const& product) const {
    if (auto const heard = processObserver.lock()) heard->continuePressed(context(), product);
}

// Buying and restoring

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
    if (isLeaving_ || isBeingDismissed()) return;
    bool const isStarted = PremiumManager::sharedInstance().purchase({
        .payment = std::move(payment),
        .source = source_,
        .screen = className(),
        .premiumId = premiumId_,
        .abTest = abTest_,
        .completion =
            [weak = Weak<BaseViewController>{this}](bool success, Ref<SKPayment> const& paid, bool deferred,
                                                    Ref<NSError> const& error) {
                auto const transaction = PremiumManager::sharedInstance().reportedTransaction();
                DispatchQueue::main().async([=] {
                    auto const screen = weak.lock();
                    if (!screen) return;
                    screen->noteOutcome(success, paid, deferred, transaction);
                    screen->purchaseDidEnd(success, paid, deferred, error);
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

void BaseViewController::noteOutcome(bool success, Ref<SKPayment> const& payment, bool deferred,
                                     Ref<SKPaymentTransaction> const& transaction) {
    using Kind = PaywallOutcome::Kind;
    if (!payment) return;
    auto const product = loadedProduct(*payment);
    if (success)
        earned_ = {.kind = Kind::purchased, .product = product, .transaction = transaction};
    else if (deferred)
        earned_ = {.kind = Kind::waitingForApproval, .product = product};
    else if (earned_ && earned_->kind == Kind::waitingForApproval && earned_->product == product)
        earned_.reset(); // declined
}

std::string BaseViewController::pendingApprovalMessage() const {
    auto const host = delegate();
    return replacingOccurrences(Texts::text("Thank you! You can continue to use Darno while your purchase is "
                                            "pending an approval from your parent."),
                                "Darno", host ? host->appName().value_or("") : "");
}

void BaseViewController::restorePurchases(UIControl& /*sender*/) { restore(); }

void BaseViewController::restore() {
    if (isLeaving_ || isBeingDismissed()) return;
    setProgressShown(true);
    PremiumManager::sharedInstance().restore(
        restoreSource, [weak = Weak<BaseViewController>{this}](bool success, Ref<NSError> const& error) {
            auto const restored = PremiumManager::sharedInstance().restoredTransactions();
            DispatchQueue::main().async([=] {
                auto const screen = weak.lock();
                if (!screen) return;
                if (success) screen->earned_ = {.kind = PaywallOutcome::Kind::restored, .restored = restored};
                screen->restoreDidEnd(success, error);
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
    if (isLeaving_) return;
    auto alert = make<UIAlertController>(title, message, UIAlertControllerStyle::alert);
    for (auto const& choice : choices) {
        auto const perform = [weak = Weak<BaseViewController>{this}, action = choice.action](UIAlertAction&) {
            if (action) action(weak.lock().get());
        };
        auto button =
            make<UIAlertAction>(Texts::text(choice.title), UIAlertActionStyle::defaultStyle, perform);
        alert->addAction(button);
        if (choice.isPreferred) alert->setPreferredAction(button);
    }
    present(alert, true);
}

} // namespace trelundo
