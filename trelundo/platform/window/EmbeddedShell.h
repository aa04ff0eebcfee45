#pragma once

#include "trelundo/platform/graphics/Surface.h"
#include "trelundo/platform/uikit/views/UIScreen.h"
#include "trelundo/platform/uikit/views/UIWindow.h"
#include "trelundo/platform/window/AccessibleView.h"

#include <functional>
#include <memory>
#include <vector>

namespace trelundo {

class Clock;

/// The place that a host gives to an embedded shell. The host measures in points of its own.
struct EmbeddedScreen {
    CGSize size;                // host points
    double scale = 1;           // pixels a host point
    UIEdgeInsets safeArea = {}; // host points at the edges that something else covers
    double zoom = 1;            // host points shown for a point of the views
    /// What the shell behaves as while it has this device's size, upright or turned, and what it then has
    /// insets and scale from; null: as its size says. Need not outlive the call.
    DeviceProfile const* device = nullptr;
};

/// A window inside a program that has a loop, a window and input of its own. It draws into memory and never
/// waits, never runs a loop and never calls the host but through `wakeUp`:
///
/// - the host hands input over, and calls frame() whenever that is due;
/// - frame() tells which pixels changed and when it wants to be called again;
/// - `wakeUp` tells that it wants to be called sooner than that.
///
/// Every shell has a screen, windows and animations of its own; several may live at once. All calls belong to
/// one thread, the one that made the first shell; calls from another end the program with a message.
///
/// A place smaller than the smallest device shows the views smaller instead of cutting them off.
class EmbeddedShell {
public:
    struct Configuration {
        EmbeddedScreen screen;
        /// Asks the host to call frame() soon, from the loop of its main thread. Called from any thread, also
        /// during a call of the shell, at most once between two frames; it must not call the shell itself.
        /// Absent: the host calls frame() often enough by itself.
        std::function<void()> wakeUp = {};
        /// The shell's time; must outlive it. Null: real time.
        Clock* clock = nullptr;
    };
    /// Appearance and direction are at first those of the shell that was current, light and the application's
    /// for the first.
    explicit EmbeddedShell(Configuration configuration);
    ~EmbeddedShell();
    EmbeddedShell(EmbeddedShell const&) = delete;
    EmbeddedShell& operator=(EmbeddedShell const&) = delete;

    UIWindow& window();
    /// What is made outside the calls of any shell (views, controllers, pictures) is made for the shell that
    /// this was last called on; a new shell is current. Of no account while there is one shell only.
    void makeCurrent();

    // Frames.

    struct Frame {
        std::vector<CGRect> dirty; // what changed in pixels(), in whole pixels; empty: nothing
        double next;               // seconds until frame() wants to be called again; infinity: when woken
    };
    /// One frame at the present moment: animations advance, the main queue has its turn, layout follows, and
    /// what changed is drawn. Calling it more often than it asks for does no harm.
    Frame frame();
    /// The same without drawing.
    void step();
    /// A main-queue turn and layout without animations.
    void turn();
    /// Draws what has changed since it was drawn last, and gives it as frame() does.
    std::vector<CGRect> render();
    /// As frame() last drew them: premultiplied 0xAARRGGBB words, whole rows; opaque black where no view is.
    /// The surface is another one after the screen has changed its size in pixels.
    Surface const& pixels() const;
    /// Seconds until frame() wants to be called, as Frame::next.
    double untilNextFrame();
    /// Asks for a frame after views were changed from outside of input and main-queue blocks.
    void setNeedsFrame();
    /// A shell that nobody sees asks for no frames because something moves. Visible at first.
    void setVisible(bool visible);

    // The place.

    void setScreen(EmbeddedScreen const& screen);
    EmbeddedScreen const& screen() const;
    /// Host points for a point of the views: the screen's zoom, less in a place smaller than any device.
    double zoom() const;
    void setUserInterfaceStyle(UIUserInterfaceStyle style);
    void setUserInterfaceLayoutDirection(UIUserInterfaceLayoutDirection direction);

    // Input, in host points. A finger keeps its id until it ends; the mouse is one finger.

    void touchBegan(int id, CGPoint location);
    void touchMoved(int id, CGPoint location);
    void touchEnded(int id, CGPoint location);
    void touchCancelled(int id);
    void keyPressed(UIWindow::Key key);
    /// Scrolls by (dx, dy) host points, positive toward later content, what lies at `location`. Returns
    /// whether anything scrolled, so that the host may scroll what lies around the shell.
    bool scroll(CGPoint location, double dx, double dy);

    // For assistive programs.

    /// The labelled and pressable views in reading order.
    std::vector<AccessibleView> accessibleViews();
    /// Does what a tap on the view would do; nothing when it has gone or is disabled.
    void press(AccessibleView const& view);

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace trelundo
