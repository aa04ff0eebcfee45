#pragma once

#include "trelundo/platform/uikit/controllers/UIViewController.h"

namespace trelundo {

/// How one presented controller stands in its window.
struct Presentation {
    UIModalPresentationStyle style;              // as resolved: never automatic
    Ref<UIView> container;                       // covers the window and takes its touches
    Ref<UIView> dimming;                         // behind a sheet; null otherwise
    Ref<UIView> carrier;                         // holds the controller's view; transitions move it
    std::vector<Weak<UIViewController>> covered; // whose views are out of the window meanwhile, topmost first
};

/// Puts controllers on top of one another and takes them away again, with the callbacks and completions of
/// both sides in their documented order.
class PresentationEngine {
public:
    using Completion = std::function<void()>;
    using Chain = std::vector<Ref<UIViewController>>; // presented by one another, lowest first

    static void present(UIViewController& presenter, Ref<UIViewController> controller, bool animated,
                        Completion completion);
    static void dismiss(UIViewController& controller, bool animated, Completion completion);

    /// Everything that `controller` has presented, directly or not.
    static Chain chainAbove(UIViewController const& controller);
    /// Takes away what a controller presents without callbacks or completions: its window is going.
    static void abandon(UIViewController& controller);
    static void afterNextTransition(Completion action);

    // Appearance callbacks, under the traits of the controller; kept in balance.
    static void willAppear(UIViewController& controller, bool animated);
    static void isAppearing(UIViewController& controller, bool animated);
    static void didAppear(UIViewController& controller, bool animated);
    static void willDisappear(UIViewController& controller, bool animated);
    static void didDisappear(UIViewController& controller, bool animated);

    // Standing in the window (PresentationEngineLayout.cpp).
    /// Sizes everything presented to the window.
    static void sizeToWindow(UIViewController& root, UIWindow& window);
    /// The topmost controller that decides on the status bar: of those over the whole screen.
    static UIViewController const* statusBarController(UIViewController const& root);

private:
    struct Dismissal;

    static bool isOnScreen(UIViewController const& controller, UIViewController const& presenter);
    static bool mayPresent(UIViewController& presenter, UIViewController const* controller);
    static void link(UIViewController& presenter, Ref<UIViewController> const& controller);
    static void unlink(UIViewController& presenter);
    static void cover(UIViewController& presenter, Presentation& presentation, bool animated);
    static void uncover(Presentation const& presentation, UIWindow& window, bool animated);
    static void transitionDidEnd();
    static void endPresenting(UIViewController& controller, bool animated);
    static void beginDismissal(Dismissal const& dismissal);
    static void endDismissal(Dismissal const& dismissal);
    static void transition(UIViewController& controller, bool arrives, bool animated, Completion ended);

    static void build(UIViewController& controller);
    static void install(UIViewController& controller, UIWindow& window);
    static void fitToWindow(UIViewController& controller, UIWindow& window);
    static void updateDimming(UIViewController& controller);
    static Ref<UIView> host(UIViewController const& controller);
};

} // namespace trelundo
