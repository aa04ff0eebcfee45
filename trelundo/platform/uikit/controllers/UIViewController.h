#pragma once

#include "trelundo/platform/uikit/views/UIView.h"
#include "trelundo/platform/uikit/views/ViewOwner.h"

#include <functional>
#include <memory>

namespace trelundo {

enum class UIModalPresentationStyle : int {
    automatic = -2,
    none = -1,
    fullScreen = 0,
    pageSheet = 1,
    formSheet = 2,
    currentContext = 3,
    custom = 4,
    overFullScreen = 5,
    overCurrentContext = 6,
    popover = 7,
};
enum class UIModalTransitionStyle : int { coverVertical = 0, crossDissolve = 2 };
enum class UIStatusBarStyle : int { defaultStyle = 0, lightContent = 1, darkContent = 3 };

/// Ways in which a screen may be held; a phone upside down is not the same as a phone upright.
enum class UIInterfaceOrientationMask : unsigned {
    portrait = 1u << 1,
    portraitUpsideDown = 1u << 2,
    landscapeRight = 1u << 3,
    landscapeLeft = 1u << 4,
    landscape = landscapeLeft | landscapeRight,
    allButUpsideDown = portrait | landscape,
    all = allButUpsideDown | portraitUpsideDown,
};
/// Whether `mask` has any of `orientations`.
constexpr bool contains(UIInterfaceOrientationMask mask, UIInterfaceOrientationMask orientations) {
    return (static_cast<unsigned>(mask) & static_cast<unsigned>(orientations)) != 0;
}

struct Presentation;

/// Owns one screen's view and its life cycle. Overrides of the callbacks call the superclass.
class UIViewController : public ViewOwner {
public:
    UIViewController();
    ~UIViewController() override;

    /// Made on first access by loadView(), then viewDidLoad() runs once.
    Ref<UIView> const& view();
    void setView(Ref<UIView> view);
    bool isViewLoaded() const { return static_cast<bool>(view_); }
    void loadViewIfNeeded() { view(); }

    virtual void loadView();
    virtual void viewDidLoad() {}
    virtual void viewWillAppear(bool /*animated*/) {}
    virtual void viewIsAppearing(bool /*animated*/) {}
    virtual void viewDidAppear(bool /*animated*/) {}
    virtual void viewWillDisappear(bool /*animated*/) {}
    virtual void viewDidDisappear(bool /*animated*/) {}
    void viewWillLayoutSubviews() override {}
    void viewDidLayoutSubviews() override {}
    void viewSafeAreaInsetsDidChange() override {}
    /// The window is about to change to `size` (rotation, resize); traits and layout follow.
    virtual void viewWillTransitionToSize(CGSize /*size*/) {}
    virtual UIStatusBarStyle preferredStatusBarStyle() const { return UIStatusBarStyle::defaultStyle; }
    virtual bool prefersStatusBarHidden() const { return false; }
    virtual bool prefersHomeIndicatorAutoHidden() const { return false; }
    /// Asked of the topmost controller over the whole window whenever that changes or the device turns. On
    /// phones everything but upside down, on tablets everything.
    virtual UIInterfaceOrientationMask supportedInterfaceOrientations() const;
    /// The keys of the topmost controller: Return while no control has the focus, and Escape.
    virtual void performReturnKey() {}
    virtual void performEscapeKey() {}

    /// After preferredStatusBarStyle(), prefersStatusBarHidden() or supportedInterfaceOrientations() changed
    /// its answer.
    void setNeedsStatusBarAppearanceUpdate();

    // Presentation. Both completions come after the callbacks of both controllers; misuse (already
    // presenting, not in a window) is logged and does nothing.
    void present(Ref<UIViewController> controller, bool animated, std::function<void()> completion = nullptr);
    /// Dismisses what this controller presents, else this controller itself. With nothing to dismiss only the
    /// completion comes, on the next turn.
    void dismiss(bool animated, std::function<void()> completion = nullptr);
    Ref<UIViewController> presentedViewController() const { return presented_; }
    UIViewController* presentingViewController() const { return presenting_; }
    /// Automatic, the default, is a page sheet.
    UIModalPresentationStyle modalPresentationStyle() const { return presentationStyle_; }
    void setModalPresentationStyle(UIModalPresentationStyle style) { presentationStyle_ = style; }
    UIModalTransitionStyle modalTransitionStyle() const { return transitionStyle_; }
    void setModalTransitionStyle(UIModalTransitionStyle style) { transitionStyle_ = style; }
    bool isBeingPresented() const { return isBeingPresented_; }
    bool isBeingDismissed() const { return isBeingDismissed_; }
    /// Whether anything that this controller has presented, directly or not, is arriving or leaving:
    /// dismissals are refused meanwhile.
    bool isTransitionUnderWay() const;
    /// Calls `action` once, when the next transition of any controller has ended: after its completion, or on
    /// a later turn when it was abandoned because its window went.
    static void afterNextTransition(std::function<void()> action);

    /// During viewDidLoad the predicted traits: those of the window it will be shown in, or of the main
    /// screen.
    UITraitCollection const& traitCollection() const override;
    UIResponder* nextResponder() const override;

protected:
    /// The states of a controller's view in a transition, in this order.
    enum class TransitionStage { arriving, shown, leaving };
    /// Puts what the transition moves into the place it has at `stage`; called inside the animation.
    /// `carrier` holds the controller's view and is as large as the presentation.
    virtual void applyTransition(TransitionStage stage, UIView& carrier);
    virtual double transitionDuration() const { return 0.4; } // seconds

private:
    friend class PresentationEngine;
    friend class UIAlertController;

    void viewTraitsWillChange(UITraitCollection const& traits) override;

    Ref<UIView> view_;
    bool isLoadingView_ = false;
    bool hasAppeared_ = false;        // between the will-appear and the will-disappear callback
    Ref<UIViewController> presented_; // the presenter holds the presented controller
    UIViewController* presenting_ = nullptr;
    UIModalPresentationStyle presentationStyle_ = UIModalPresentationStyle::automatic;
    UIModalTransitionStyle transitionStyle_ = UIModalTransitionStyle::coverVertical;
    bool isBeingPresented_ = false;
    bool isBeingDismissed_ = false;
    bool isInTransition_ = false;
    std::unique_ptr<Presentation> presentation_; // while presented
    std::optional<UITraitCollection> lastTraits_;
};

} // namespace trelundo
