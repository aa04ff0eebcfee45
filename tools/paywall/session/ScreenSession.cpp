#include "tools/paywall/session/ScreenSession.h"

#include "tools/paywall/demo/Demonstration.h"
#include "tools/paywall/output/Names.h"
#include "tools/paywall/screens/ScreenProperties.h"
#include "tools/paywall/store/StoreAccess.h"
#include "trelundo/kit/screens/base/BaseViewController.h"
#include "trelundo/kit/screens/notice/BillingViewController.h"
#include "trelundo/kit/store/PremiumManager.h"
#include "trelundo/platform/foundation/RunLoop.h"
#include "trelundo/platform/uikit/accessibility/ActivityChanges.h"
#include "trelundo/platform/uikit/accessibility/TextChanges.h"
#include "trelundo/platform/uikit/controllers/PresentationListener.h"
#include "trelundo/platform/uikit/controllers/UIAlertController.h"
#include "trelundo/platform/uikit/controllers/UIApplication.h"
#include "trelundo/platform/uikit/controls/UIActivityIndicatorView.h"
#include "trelundo/platform/uikit/views/UIImageView.h"

namespace trelundo::paywall {

ScreenSession::ScreenSession(Options const& options, EventLog& log)
    : ScreenSession(options, log, openSandbox(options)) {}

ScreenSession::ScreenSession(Options const& options, EventLog& log, std::unique_ptr<SandboxStore> store)
    : options_(options)
    , log_(log)
    , host_(make<Host>(options, log))
    , store_(std::move(store))
    , screenType_(findScreen(options.screen)) {
    Locale::setPreferredLanguages({options.language});
    addHostPictures(options.pictureFolders);
    auto& queue = SKPaymentQueue::defaultQueue();
    queue.setBackend(store_.get());
    queue.setMonitor(this);
    PremiumManager::sharedInstance().setDelegate(host_);
    listen();
    loadProducts();
}

ScreenSession::~ScreenSession() {
    setTextChangeListener(nullptr);
    setActivityChangeListener(nullptr);
    setPresentationListener({});
    NotificationCenter::defaultCenter().removeObserver(notifications_);
    auto& queue = SKPaymentQueue::defaultQueue();
    queue.setMonitor(nullptr);
    queue.setBackend(nullptr);
}

void ScreenSession::loadProducts() {
    PremiumManager::sharedInstance().start(
        options_.products.value_or(store_->configuration().subscriptionIdentifiers()));
    RunLoop::main().runUntilIdle();
}

void ScreenSession::applyDiscounts(UIViewController& screen) const {
    ScreenType::PaymentDiscounts discounts;
    for (auto const& [product, offer] : options_.discounts) discounts[product] = signedDiscount(offer);
    screenType_->setDiscounts(screen, discounts);
    if (!screenType_->setDiscount || discounts.empty()) return;
    auto const product = productAt(PremiumManager::sharedInstance().products(), options_.select);
    auto const own = product ? discounts.find(product->productIdentifier()) : discounts.begin();
    if (own != discounts.end()) screenType_->setDiscount(screen, own->second);
}

void ScreenSession::applyOptions(UIViewController& screen) {
    if (auto* paywall = dynamic_cast<BaseViewController*>(&screen)) {
        if (options_.hasDelegate) paywall->setDelegate(host_);
        paywall->setSource(options_.source);
        paywall->setPremiumId(options_.premiumId);
        paywall->setABTest(options_.abTest);
        paywall->setIntroductoryPriceWasOffered(options_.introductoryPriceWasOffered);
    }
    auto* notice = dynamic_cast<BillingViewController*>(&screen);
    if (notice && options_.hasDelegate) notice->setDelegate(host_);
    if (screenType_->properties.contains("features"))
        setProperty(*screenType_, screen, "features", demonstrationFeatures());
}

void ScreenSession::makeHostScreen() {
    hostScreen_ = make<UIViewController>();
    auto picture = make<UIImageView>(UIImage::named("bg_access"));
    picture->setContentMode(UIViewContentMode::scaleAspectFill);
    picture->setFrame(hostScreen_->view()->bounds());
    picture->setAutoresizingMask(UIViewAutoresizing::flexibleWidth | UIViewAutoresizing::flexibleHeight);
    hostScreen_->view()->setBackgroundColor(UIColor::black());
    hostScreen_->view()->addSubview(picture);
}

void ScreenSession::show(UIWindow& window) {
    screen_ = screenType_->make();
    auto& screen = *screen_;
    applyOptions(screen);
    applyDiscounts(screen);
    for (auto const& [name, value] : options_.settings) setProperty(*screenType_, screen, name, value);
    screenType_->setProducts(screen, PremiumManager::sharedInstance().products(), options_.select);

    UIScreen::main().setUserInterfaceStyle(options_.appearance);
    window.screenDidChange();
    makeHostScreen();
    window.setRootViewController(hostScreen_);
    window.makeKeyAndVisible();
    screen.view()->setAccessibilityIdentifier("view");
    screen.setModalPresentationStyle(screenType_->presentation);
    hostScreen_->present(screen_, false);
    UIApplication::shared().turn();
}

// The log

void ScreenSession::listen() {
    setTextChangeListener([this](UIView& view, std::string const& text) {
        log_.write("text", {{"view", view.accessibilityIdentifier()}, {"text", text}});
    });
    setActivityChangeListener([this](UIActivityIndicatorView& view, bool animating) {
        if (view.accessibilityIdentifier() == "activityIndicatorView")
            log_.write("progress", {{"shown", animating}});
    });
    setPresentationListener({
        .presented = [this](UIViewController& controller,
                            bool animated) { didPresent(controller, animated); },
        .dismissed = [this](UIViewController& controller,
                            bool animated) { didDismiss(controller, animated); },
    });
    notifications_ = NotificationCenter::defaultCenter().addObserver(
        std::nullopt, nullptr, [this](Notification const& notification) {
            auto const object = notification.object ? Json(notification.object->className()) : Json(nullptr);
            log_.write("notification", {{"name", notification.name}, {"object", object}});
        });
}

void ScreenSession::didPresent(UIViewController& controller, bool animated) {
    auto const* alert = dynamic_cast<UIAlertController*>(&controller);
    if (!alert) {
        log_.write("presented", {{"screen", controller.className()}, {"animated", animated}});
        return;
    }
    Json actions = Json::array();
    for (auto const& action : alert->actions()) actions.push_back(action->title());
    auto const preferred = alert->preferredAction();
    log_.write("alert", {{"title", orNull(alert->alertTitle())},
                         {"message", orNull(alert->message())},
                         {"actions", actions},
                         {"preferred", preferred ? Json(preferred->title()) : Json(nullptr)}});
}

void ScreenSession::didDismiss(UIViewController& controller, bool animated) {
    if (auto const* alert = dynamic_cast<UIAlertController*>(&controller)) {
        auto const action = alert->performedAction();
        log_.write("alert-dismissed", {{"action", action ? Json(action->title()) : Json(nullptr)}});
        return;
    }
    log_.write("dismissed", {{"screen", controller.className()}, {"animated", animated}});
    if (screen_ && &controller == screen_.get()) screen_ = nullptr;
}

void ScreenSession::paymentAdded(SKPayment const& payment) {
    auto const discount = payment.paymentDiscount();
    log_.write("payment", {{"product", payment.productIdentifier()},
                           {"applicationUsername", orNull(payment.applicationUsername())},
                           {"discount", discount ? Json(discount->identifier()) : Json(nullptr)}});
}

void ScreenSession::transactionUpdated(std::string const& id, SKPaymentTransaction const& transaction) {
    auto const& error = transaction.error();
    log_.write("transaction", {{"id", id},
                               {"product", transaction.payment()->productIdentifier()},
                               {"state", nameOf(transaction.transactionState())},
                               {"error", error ? Json{{"domain", error->domain()}, {"code", error->code()}}
                                               : Json(nullptr)}});
}

void ScreenSession::transactionFinished(std::string const& id, SKPaymentTransaction const& /*transaction*/) {
    log_.write("finished", {{"id", id}});
}

} // namespace trelundo::paywall
