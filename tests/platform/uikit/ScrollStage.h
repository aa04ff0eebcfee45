#pragma once

#include "platform/coreanimation/CADisplayLink.h"
#include "platform/coreanimation/CATransaction.h"
#include "platform/foundation/Clock.h"
#include "platform/uikit/collection/UICollectionView.h"
#include "platform/uikit/views/UIWindow.h"

namespace trelundo {

/// A window of 400 x 600 points under virtual time, with frames and fingers by hand.
class ScrollStage {
public:
    static constexpr double frameDuration = 1.0 / 60;

    ScrollStage() {
        CATransaction::reset();
        Clock::setCurrent(&clock_);
        window = make<UIWindow>(CGRect{0, 0, 400, 600});
        window->makeKeyAndVisible();
    }
    ~ScrollStage() {
        window = nullptr;
        CATransaction::reset();
        Clock::setCurrent(nullptr);
    }

    void frame() {
        clock_.setNow(clock_.now() + frameDuration);
        CATransaction::advanceFrame();
        CADisplayLink::fire(clock_.now());
        window->layoutWindow();
    }
    void frames(int count) {
        for (int i = 0; i < count; ++i) frame();
    }
    double now() const { return clock_.now(); }

    void press(CGPoint location) { window->touchBegan(1, finger_ = location); }
    /// Moves the finger by (dx, dy) in one frame.
    void move(double dx, double dy = 0) {
        frame();
        finger_ = finger_ + CGPoint{dx, dy};
        window->touchMoved(1, finger_);
    }
    void release() { window->touchEnded(1, finger_); }
    /// Lets the finger rest until no speed is left, then lifts it.
    void restAndRelease() {
        frames(12);
        release();
    }

    Ref<UIWindow> window;

private:
    VirtualClock clock_;
    CGPoint finger_;
};

} // namespace trelundo
