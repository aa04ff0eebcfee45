#pragma once

#include "trelundo/platform/uikit/controllers/UIViewController.h"
#include "trelundo/platform/uikit/views/UITouch.h"
#include "trelundo/platform/uikit/views/UIView.h"

#include <memory>
#include <optional>
#include <vector>

namespace trelundo {

class Context;

/// The root of a view tree: takes touches in, keeps traits and safe area up to date, lays out before each
/// frame. It belongs to the shell that was current when it was made, and its calls run there.
class UIWindow : public UIView {
public:
    UIWindow();
    explicit UIWindow(CGRect frame);
    ~UIWindow() override;

    Ref<UIViewController> rootViewController() const { return root_; }
    /// Loads the controller's view, sizes it to the window and, when the window is visible, calls the
    /// appearance callbacks.
    void setRootViewController(Ref<UIViewController> controller);
    void makeKeyAndVisible();
    bool isVisible() const { return isVisible_; }
    /// Every visible window of the current shell, in the order in which they became visible.
    static std::vector<UIWindow*> const& visibleWindows();
    /// The current shell's window that makeKeyAndVisible() was last called on; null without one.
    static UIWindow* keyWindow();
    /// The topmost presented controller, or the root.
    Ref<UIViewController> topViewController() const;
    /// What the top controller's status bar, home indicator or orientation preferences say has changed:
    /// orientation and safe area follow.
    void setNeedsStatusBarAppearanceUpdate();

    /// The screen's size, orientation, safe area or style changed: sizes, traits and layout follow.
    void screenDidChange();
    /// Takes the layout direction of the screen over, and with it that of a new language.
    void followLayoutDirection();
    /// The device was turned: the screen turns too once what stands over the whole window supports it, and
    /// from now on follows what the screens to come support. Before the first call it stays as configured.
    void deviceDidTurn(bool landscape);
    /// What the topmost controller over the whole window supports; everything without a controller.
    UIInterfaceOrientationMask supportedInterfaceOrientations() const;
    UITraitCollection const& traitCollection() const override { return traits_; }
    UIEdgeInsets windowSafeAreaInsets() const override { return windowSafeArea_; }

    // Pointer and touch input, in window points. One touch id at a time per finger.
    void touchBegan(int id, CGPoint location);
    void touchMoved(int id, CGPoint location);
    void touchEnded(int id, CGPoint location);
    void touchCancelled(int id);
    /// Return and Escape reach alerts (preferred and cancel action); Tab moves the focus, Space presses.
    enum class Key { returnKey, escape, tab, backtab, space };
    void keyPressed(Key key);

    /// Constraints, layout and safe-area updates for everything that is marked; part of every run-loop turn.
    void layoutWindow();

    UIResponder* nextResponder() const override { return nullptr; }

    /// For the platform itself.
    Context& context() const;

private:
    struct ActiveTouch;
    struct State;

    void showRoot();
    void hideRoot();
    void updateSafeArea();
    void updateOrientation();
    UIWindow* asWindow() override { return this; }
    void cancelTouchesIn(UIView const& subtree) override;
    void deliver(ActiveTouch& active, UITouchPhase phase);
    void takeOver(ActiveTouch& active, UIScrollView& taker);
    void moveFocus(int step);
    void pressFocused();
    void placeFocusRing();

    std::unique_ptr<State> state_;
    Ref<UIViewController> root_;
    bool isVisible_ = false;
    std::optional<bool> isHeldInLandscape_; // absent: the screen stays as configured
    UITraitCollection traits_;
    UIEdgeInsets windowSafeArea_;
};

} // namespace trelundo
