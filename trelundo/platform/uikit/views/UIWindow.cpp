#include "trelundo/platform/uikit/views/UIWindow.h"

#include "trelundo/platform/foundation/Clock.h"
#include "trelundo/platform/foundation/internal/Context.h"
#include "trelundo/platform/foundation/internal/MainThread.h"
#include "trelundo/platform/uikit/collection/UIScrollView.h"
#include "trelundo/platform/uikit/controllers/internal/PresentationEngine.h"
#include "trelundo/platform/uikit/controls/UIControl.h"
#include "trelundo/platform/uikit/views/UIScreen.h"
#include "trelundo/platform/uikit/views/internal/ShownWindows.h"

#include <algorithm>
#include <map>

namespace trelundo {

/// One finger on the window. A scroll view that takes it over has it until the end.
struct UIWindow::ActiveTouch {
    Ref<UITouch> touch;
    std::vector<Weak<UIScrollView>> scrollViews; // that hold the touched view, nearest first
    Weak<UIScrollView> taker;
    bool isTaken = false;
};

struct UIWindow::State {
    std::shared_ptr<Context> context = Context::current().shared_from_this();
    std::map<int, std::shared_ptr<ActiveTouch>> touches;
    Weak<UIControl> focused; // by the keyboard
    Ref<CALayer> focusRing;
    bool isLayingOut = false;
};

namespace {

void send(UIView& view, UITouch& touch) {
    switch (touch.phase()) {
    case UITouchPhase::began:
        return view.touchesBegan(touch);
    case UITouchPhase::moved:
        return view.touchesMoved(touch);
    case UITouchPhase::stationary:
        return;
    case UITouchPhase::ended:
        return view.touchesEnded(touch);
    case UITouchPhase::cancelled:
        return view.touchesCancelled(touch);
    }
}

std::vector<Weak<UIScrollView>> scrollViewsAround(UIView& view) {
    std::vector<Weak<UIScrollView>> found;
    for (auto* step = &view; step; step = step->superview()) {
        if (auto* scrollView = dynamic_cast<UIScrollView*>(step)) found.emplace_back(scrollView);
    }
    return found;
}

/// Enabled controls in reading order of the tree.
void collectControls(UIView const& view, std::vector<UIControl*>& controls) {
    for (auto const& child : view.subviews()) {
        if (child->isHidden() || !child->isUserInteractionEnabled() || child->alpha() < 0.01) continue;
        auto* control = dynamic_cast<UIControl*>(child.get());
        if (control && control->isEnabled()) controls.push_back(control);
        collectControls(*child, controls);
    }
}

} // namespace

std::vector<UIWindow*> const& UIWindow::visibleWindows() { return ShownWindows::current().all; }

Context& UIWindow::context() const { return *state_->context; }

UIWindow* UIWindow::keyWindow() { return ShownWindows::current().key; }

UIWindow::UIWindow()
    : UIWindow(UIScreen::main().bounds()) {}

UIWindow::UIWindow(CGRect frame)
    : UIView(frame)
    , state_(std::make_unique<State>())
    , traits_(UIScreen::main().traitCollection())
    , windowSafeArea_(UIScreen::main().safeAreaInsets()) {
    window_ = this;
    layer().setHidden(true);
}

UIWindow::~UIWindow() {
    ContextScope const scope(state_->context.get());
    state_->touches.clear();
    ShownWindows::current().remove(*this);
    if (root_) PresentationEngine::abandon(*root_);
    while (!subviews().empty()) subviews().back()->removeFromSuperview();
}

void UIWindow::setRootViewController(Ref<UIViewController> controller) {
    requireMainThread("a window");
    ContextScope const scope(state_->context.get());
    if (controller == root_) return;
    hideRoot();
    root_ = std::move(controller);
    if (!root_) return;
    root_->loadViewIfNeeded();
    root_->view()->setFrame(bounds());
    setNeedsStatusBarAppearanceUpdate();
    if (isVisible_) showRoot();
}

void UIWindow::showRoot() {
    auto const root = root_;
    PresentationEngine::willAppear(*root, false);
    insertSubview(root->view(), 0);
    PresentationEngine::isAppearing(*root, false);
    layoutWindow();
    PresentationEngine::didAppear(*root, false);
}

void UIWindow::hideRoot() {
    auto const root = root_;
    if (!root) return;
    PresentationEngine::abandon(*root);
    if (!root->isViewLoaded() || root->view()->superview() != this) return;
    PresentationEngine::willDisappear(*root, false);
    root->view()->removeFromSuperview();
    PresentationEngine::didDisappear(*root, false);
}

void UIWindow::makeKeyAndVisible() {
    ContextScope const scope(state_->context.get());
    auto& shown = ShownWindows::current();
    shown.key = this;
    shown.keyAsView = this;
    if (isVisible_) return;
    isVisible_ = true;
    shown.all.push_back(this);
    layer().setHidden(false);
    layer().setDisplayRoot(true);
    UIScreen::main().updateUserInterfaceLayoutDirection();
    traits_ = UIScreen::main().traitCollection();
    updateSafeArea();
    traitsDidPropagate();
    if (root_) showRoot();
}

Ref<UIViewController> UIWindow::topViewController() const {
    auto top = root_;
    while (top && top->presentedViewController()) top = top->presentedViewController();
    return top;
}

void UIWindow::screenDidChange() {
    ContextScope const scope(state_->context.get());
    auto const& screen = UIScreen::main();
    auto const size = screen.bounds().size;
    bool const resizes = size != bounds().size;
    if (resizes && root_) {
        root_->viewWillTransitionToSize(size);
        for (auto const& presented : PresentationEngine::chainAbove(*root_))
            presented->viewWillTransitionToSize(size);
    }
    setFrame({frame().origin, size});
    traits_ = screen.traitCollection();
    updateSafeArea();
    if (root_) {
        if (root_->isViewLoaded()) root_->view()->setFrame(bounds());
        PresentationEngine::sizeToWindow(*root_, *this);
    }
    traitsDidPropagate();
    setNeedsLayout();
}

void UIWindow::followLayoutDirection() {
    UIScreen::main().updateUserInterfaceLayoutDirection();
    if (traits_.layoutDirection != UIScreen::main().traitCollection().layoutDirection) screenDidChange();
}

void UIWindow::setNeedsStatusBarAppearanceUpdate() {
    ContextScope const scope(state_->context.get());
    updateOrientation();
    updateSafeArea();
}

// Orientation.

void UIWindow::deviceDidTurn(bool landscape) {
    ContextScope const scope(state_->context.get());
    isHeldInLandscape_ = landscape;
    updateOrientation();
}

UIInterfaceOrientationMask UIWindow::supportedInterfaceOrientations() const {
    auto const* decider = root_ ? PresentationEngine::statusBarController(*root_) : nullptr;
    return decider ? decider->supportedInterfaceOrientations() : UIInterfaceOrientationMask::all;
}

/// As the device is held where that is supported, else the other way.
void UIWindow::updateOrientation() {
    if (!isHeldInLandscape_) return;
    auto const mask = supportedInterfaceOrientations();
    bool const allowsUpright = contains(mask, UIInterfaceOrientationMask::portrait) ||
                               contains(mask, UIInterfaceOrientationMask::portraitUpsideDown);
    bool const allowsTurned = contains(mask, UIInterfaceOrientationMask::landscape);
    bool const isTurned = *isHeldInLandscape_ ? allowsTurned : !allowsUpright;
    auto& screen = UIScreen::main();
    if (isTurned == screen.isLandscape()) return;
    screen.configure(DeviceProfile{screen.device()}, isTurned);
    screenDidChange();
}

/// Without a cut-out in the display the top inset is the status bar's alone and goes with it.
void UIWindow::updateSafeArea() {
    auto const& screen = UIScreen::main();
    auto insets = screen.safeAreaInsets();
    auto const& device = screen.device();
    bool const hasCutOut = device.idiom == UIUserInterfaceIdiom::phone && device.portraitInsets.bottom > 0;
    auto const* decider = root_ ? PresentationEngine::statusBarController(*root_) : nullptr;
    if (!hasCutOut && decider && decider->prefersStatusBarHidden()) insets.top = 0;
    if (insets == windowSafeArea_) return;
    windowSafeArea_ = insets;
    setNeedsLayout();
}

void UIWindow::layoutWindow() {
    if (state_->isLayingOut) return;
    ContextScope const context(state_->context.get());
    followLayoutDirection();
    state_->isLayingOut = true;
    UITraitScope const scope(traits_);
    layoutIfNeeded();
    state_->isLayingOut = false;
    placeFocusRing();
}

// Touches.

void UIWindow::touchBegan(int id, CGPoint location) {
    requireMainThread("a window");
    ContextScope const scope(state_->context.get());
    auto const self = strong(*this);
    touchCancelled(id);
    auto const hit = hitTest(location);
    if (!hit) return;
    bool const isHeld = std::ranges::any_of(
        state_->touches, [&hit](auto const& entry) { return entry.second->touch->view() == hit; });
    if (isHeld) return; // a view follows one finger at a time

    auto active = std::make_shared<ActiveTouch>();
    active->touch = make<UITouch>();
    active->touch->view_ = hit;
    active->touch->location_ = active->touch->previousLocation_ = location;
    active->scrollViews = scrollViewsAround(*hit);
    state_->touches[id] = active;
    deliver(*active, UITouchPhase::began);
}

void UIWindow::touchMoved(int id, CGPoint location) {
    auto const found = state_->touches.find(id);
    if (found == state_->touches.end()) return;
    auto const self = strong(*this);
    auto const active = found->second;
    active->touch->previousLocation_ = std::exchange(active->touch->location_, location);
    deliver(*active, UITouchPhase::moved);
}

void UIWindow::touchEnded(int id, CGPoint location) {
    auto const found = state_->touches.find(id);
    if (found == state_->touches.end()) return;
    auto const self = strong(*this);
    auto const active = found->second;
    state_->touches.erase(found);
    active->touch->previousLocation_ = std::exchange(active->touch->location_, location);
    deliver(*active, UITouchPhase::ended);
}

void UIWindow::touchCancelled(int id) {
    auto const found = state_->touches.find(id);
    if (found == state_->touches.end()) return;
    auto const self = strong(*this);
    auto const active = found->second;
    state_->touches.erase(found);
    deliver(*active, UITouchPhase::cancelled);
}

void UIWindow::deliver(ActiveTouch& active, UITouchPhase phase) {
    ContextScope const scope(state_->context.get());
    auto& touch = *active.touch;
    touch.phase_ = phase;
    touch.timestamp_ = Clock::current().now();
    if (active.isTaken) {
        if (auto taker = active.taker.lock()) taker->trackTouch(touch);
        return;
    }
    for (auto const& weak : active.scrollViews) {
        auto const scrollView = weak.lock();
        if (scrollView && scrollView->trackTouch(touch)) return takeOver(active, *scrollView);
    }
    if (auto view = touch.view()) send(*view, touch);
}

/// The touched view, if it knows of the touch, and the other scroll views lose it.
void UIWindow::takeOver(ActiveTouch& active, UIScrollView& taker) {
    auto& touch = *active.touch;
    bool const isKnown = touch.phase() != UITouchPhase::began;
    active.isTaken = true;
    active.taker = &taker;
    auto const phase = std::exchange(touch.phase_, UITouchPhase::cancelled);
    for (auto const& weak : active.scrollViews) {
        auto const other = weak.lock();
        if (other && other.get() != &taker) other->trackTouch(touch);
    }
    auto const view = touch.view();
    if (isKnown && view) view->touchesCancelled(touch);
    touch.phase_ = phase;
}

/// The views in the subtree lose their touches. A scroll view outside goes on with its own: what it scrolls
/// may come and go under the finger.
void UIWindow::cancelTouchesIn(UIView const& subtree) {
    if (state_->touches.empty()) return;
    auto const touches = state_->touches;
    for (auto const& [id, active] : touches) {
        auto const taker = active->taker.lock();
        if (taker && taker->isDescendantOf(subtree)) touchCancelled(id);
        if (active->isTaken) continue;
        auto const view = active->touch->view();
        if (!view || !view->isDescendantOf(subtree)) continue;
        auto const phase = std::exchange(active->touch->phase_, UITouchPhase::cancelled);
        view->touchesCancelled(*active->touch);
        std::erase_if(active->scrollViews, [&](Weak<UIScrollView> const& weak) {
            auto const scrollView = weak.lock();
            if (!scrollView || !scrollView->isDescendantOf(subtree)) return !scrollView;
            scrollView->trackTouch(*active->touch);
            return true;
        });
        active->touch->view_ = nullptr;
        active->touch->phase_ = phase;
        if (active->scrollViews.empty()) state_->touches.erase(id);
    }
}

// Keys and focus.

void UIWindow::keyPressed(Key key) {
    ContextScope const scope(state_->context.get());
    auto const self = strong(*this);
    auto const top = topViewController();
    if (!top) return;
    // What a new screen or an alert has covered is out of the keyboard's reach.
    auto const focused = state_->focused.lock();
    if (focused && !focused->isDescendantOf(*top->view())) state_->focused = nullptr;
    placeFocusRing();
    switch (key) {
    case Key::returnKey:
        return state_->focused.lock() ? pressFocused() : top->performReturnKey();
    case Key::escape:
        return top->performEscapeKey();
    case Key::tab:
        return moveFocus(1);
    case Key::backtab:
        return moveFocus(-1);
    case Key::space:
        return pressFocused();
    }
}

void UIWindow::moveFocus(int step) {
    auto const top = topViewController();
    std::vector<UIControl*> controls;
    collectControls(*top->view(), controls);
    if (controls.empty()) return;
    auto const focused = state_->focused.lock();
    auto const found = std::ranges::find(controls, focused.get());
    auto const count = static_cast<int>(controls.size());
    int const start = step > 0 ? -1 : count;
    int const index = found == controls.end() ? start : static_cast<int>(found - controls.begin());
    state_->focused = controls[static_cast<std::size_t>((index + step + count) % count)];
    placeFocusRing();
}

void UIWindow::pressFocused() {
    auto const focused = state_->focused.lock();
    if (!focused || !focused->isEnabled() || focused->window() != this) return;
    focused->sendActions(UIControlEvents::touchUpInside);
}

/// The ring lies around the focused control, above all views.
void UIWindow::placeFocusRing() {
    auto const focused = state_->focused.lock();
    bool const isShown = focused && focused->window() == this;
    if (!isShown) {
        if (state_->focusRing) state_->focusRing->removeFromSuperlayer();
        state_->focusRing = nullptr;
        state_->focused = nullptr;
        return;
    }
    if (!state_->focusRing) {
        state_->focusRing = make<CALayer>();
        state_->focusRing->setZPosition(greatestFiniteMagnitude);
        state_->focusRing->setBorderWidth(2);
        layer().addSublayer(state_->focusRing);
    }
    state_->focusRing->setBorderColor(UIColor::systemBlue().cgColor(traits_));
    state_->focusRing->setCornerRadius(focused->layer().cornerRadius() + 3);
    state_->focusRing->setFrame(focused->convertRectTo(focused->bounds(), nullptr).insetBy(-3, -3));
}

} // namespace trelundo
