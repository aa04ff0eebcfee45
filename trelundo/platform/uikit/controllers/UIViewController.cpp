#include "trelundo/platform/uikit/controllers/UIViewController.h"

#include "trelundo/platform/foundation/internal/Context.h"
#include "trelundo/platform/foundation/internal/MainThread.h"
#include "trelundo/platform/uikit/controllers/internal/PresentationEngine.h"
#include "trelundo/platform/uikit/views/UIScreen.h"
#include "trelundo/platform/uikit/views/UIWindow.h"

#include <algorithm>

namespace trelundo {

namespace {

/// Of the window that shows the controller or, when that is covered, what it has presented; null without one.
Context* contextOf(UIViewController& controller) {
    for (auto step = strong(controller); step; step = step->presentedViewController()) {
        auto const* window = step->isViewLoaded() ? step->view()->window() : nullptr;
        if (window) return &window->context();
    }
    return nullptr;
}

} // namespace

UIViewController::UIViewController() = default;

UIViewController::~UIViewController() {
    PresentationEngine::abandon(*this);
    if (view_) view_->owner_ = nullptr;
}

Ref<UIView> const& UIViewController::view() {
    if (view_ || isLoadingView_) return view_;
    if (auto* window = UIWindow::keyWindow()) window->followLayoutDirection();
    UITraitScope const scope(traitCollection());
    isLoadingView_ = true;
    loadView();
    isLoadingView_ = false;
    if (!view_) UIViewController::loadView();
    viewDidLoad();
    return view_;
}

void UIViewController::setView(Ref<UIView> view) {
    if (view_) view_->owner_ = nullptr;
    view_ = std::move(view);
    if (view_) view_->owner_ = this;
}

void UIViewController::loadView() {
    auto plain = make<UIView>(UIScreen::main().bounds());
    plain->setAutoresizingMask(UIViewAutoresizing::flexibleWidth | UIViewAutoresizing::flexibleHeight);
    setView(std::move(plain));
}

UIInterfaceOrientationMask UIViewController::supportedInterfaceOrientations() const {
    return traitCollection().userInterfaceIdiom == UIUserInterfaceIdiom::pad
               ? UIInterfaceOrientationMask::all
               : UIInterfaceOrientationMask::allButUpsideDown;
}

void UIViewController::setNeedsStatusBarAppearanceUpdate() {
    if (view_ && view_->window()) view_->window()->setNeedsStatusBarAppearanceUpdate();
}

void UIViewController::present(Ref<UIViewController> controller, bool animated,
                               std::function<void()> completion) {
    requireMainThread("a view controller");
    ContextScope const scope(contextOf(*this));
    PresentationEngine::present(*this, std::move(controller), animated, std::move(completion));
}

void UIViewController::dismiss(bool animated, std::function<void()> completion) {
    requireMainThread("a view controller");
    ContextScope const scope(contextOf(*this));
    PresentationEngine::dismiss(*this, animated, std::move(completion));
}

bool UIViewController::isTransitionUnderWay() const {
    auto const chain = PresentationEngine::chainAbove(*this);
    return std::ranges::any_of(chain, [](auto const& controller) { return controller->isInTransition_; });
}

void UIViewController::afterNextTransition(std::function<void()> action) {
    PresentationEngine::afterNextTransition(std::move(action));
}

void UIViewController::applyTransition(TransitionStage stage, UIView& carrier) {
    bool const isShown = stage == TransitionStage::shown;
    if (transitionStyle_ == UIModalTransitionStyle::crossDissolve) return carrier.setAlpha(isShown ? 1 : 0);
    auto const* container = carrier.superview();
    double const top = carrier.center().y - carrier.bounds().size.height / 2;
    double const way = container ? container->bounds().size.height - top : carrier.bounds().size.height;
    carrier.setTransform(isShown ? CGAffineTransform{} : CGAffineTransform::translation(0, way));
}

UITraitCollection const& UIViewController::traitCollection() const {
    if (view_ && view_->window()) return view_->traitCollection();
    return lastTraits_ ? *lastTraits_ : UIView::predictedTraits();
}

void UIViewController::viewTraitsWillChange(UITraitCollection const& traits) {
    if (lastTraits_ == traits) return;
    auto const previous = std::exchange(lastTraits_, traits);
    UITraitScope const scope(traits);
    traitCollectionDidChange(previous ? &*previous : nullptr);
}

UIResponder* UIViewController::nextResponder() const {
    if (presenting_) return presenting_;
    return view_ ? view_->superview() : nullptr;
}

} // namespace trelundo
