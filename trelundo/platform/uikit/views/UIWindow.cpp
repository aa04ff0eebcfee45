#include "trelundo/platform/uikit/views/UIWindow.h"

#include "trelundo/platform/uikit/controllers/internal/PresentationEngine.h"
#include "trelundo/platform/uikit/views/UIScreen.h"
#include "trelundo/platform/uikit/views/internal/UIWindowState.h"

namespace trelundo {

namespace {

std::vector<UIWindow*>& shownWindows() {
    static std::vector<UIWindow*> windows;
    return windows;
}

} // namespace

std::vector<UIWindow*> const& UIWindow::visibleWindows() { return shownWindows(); }

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
    state_->touches.clear();
    std::erase(shownWindows(), this);
    if (keyWindow_ == this) keyWindow_ = nullptr;
    if (root_) PresentationEngine::abandon(*root_);
    while (!subviews().empty()) subviews().back()->removeFromSuperview();
}

void UIWindow::setRootViewController(Ref<UIViewController> controller) {
    if (controller == root_) return;
    hideRoot();
    root_ = std::move(controller);
    if (!root_) return;
    root_->loadViewIfNeeded();
    root_->view()->setFrame(bounds());
    updateSafeArea();
    if (visible_) showRoot();
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
    keyWindow_ = this;
    if (visible_) return;
    visible_ = true;
    shownWindows().push_back(this);
    layer().setHidden(false);
    layer().setDisplayRoot(true);
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

void UIWindow::setNeedsStatusBarAppearanceUpdate() { updateSafeArea(); }

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
    state_->isLayingOut = true;
    UITraitScope const scope(traits_);
    layoutIfNeeded();
    state_->isLayingOut = false;
    placeFocusRing();
}

} // namespace trelundo
