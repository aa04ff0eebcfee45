#pragma once

#include "trelundo/platform/uikit/views/UIWindow.h"
#include "trelundo/platform/window/OffscreenShell.h"

namespace trelundo {

/// A window that is larger than 400 x 600 points under virtual time, with frames and fingers by hand.
class ScrollStage {
public:
    static constexpr double frameDuration = 1.0 / 60;

    UIWindow& window() { return shell_.window(); }

    void frame() { shell_.advance(frameDuration); }
    void frames(int count) {
        for (int i = 0; i < count; ++i) frame();
    }

    void press(CGPoint location) { window().touchBegan(1, finger_ = location); }
    /// Moves the finger by (dx, dy) in one frame.
    void move(double dx, double dy = 0) {
        frame();
        finger_ = finger_ + CGPoint{dx, dy};
        window().touchMoved(1, finger_);
    }
    void release() { window().touchEnded(1, finger_); }
    /// Lets the finger rest until no speed is left, then lifts it.
    void restAndRelease() {
        frames(12);
        release();
    }

private:
    OffscreenShell shell_{{.device = DeviceProfile::find("tablet-820x1180")}};
    CGPoint finger_;
};

} // namespace trelundo
