#pragma once

#include "trelundo/platform/foundation/Clock.h"
#include "trelundo/platform/foundation/Result.h"
#include "trelundo/platform/window/EmbeddedShell.h"

#include <string>

namespace trelundo {

/// A window without a display and with virtual time of its own: 60 frames a second, moved only by advance().
class OffscreenShell {
public:
    struct Configuration {
        DeviceProfile const* device; // never null
        bool landscape = false;      // whatever the screens support, until rotate()
        double startDate = 0;        // seconds since 2001-01-01 00:00 UTC
    };
    explicit OffscreenShell(Configuration configuration);
    ~OffscreenShell();

    UIWindow& window() { return shell_.window(); }
    /// What it stands on, for what is not repeated here.
    EmbeddedShell& embedded() { return shell_; }
    /// Seconds of virtual time since the start.
    double now() const { return clock_.now(); }
    /// Runs the frames of the next `seconds`; with 0 one turn at the present moment.
    void advance(double seconds);
    /// Turns the device; the screen follows where what it shows supports that.
    void rotate(bool landscape);
    void setUserInterfaceStyle(UIUserInterfaceStyle style);

    /// Lays out and draws the present moment.
    Surface const& render();
    /// Writes a PNG of the present moment. The error names the file.
    Result<void> snapshot(std::string const& path);

    void tap(CGPoint location);
    /// Presses at `from`, moves by (dx, dy) over `seconds` of virtual time, releases.
    void drag(CGPoint from, double dx, double dy, double seconds = 0.25);

private:
    VirtualClock clock_;
    EmbeddedShell shell_;
    double askedFrames_ = 0; // since the start, with the fraction that is still owed
    long frame_ = 0;         // frames since the start; time is frame_ / 60
};

} // namespace trelundo
