#pragma once

#include "trelundo/platform/uikit/collection/UIScrollView.h"
#include "trelundo/platform/uikit/collection/internal/ScrollArithmetic.h"
#include "trelundo/platform/uikit/collection/internal/ScrollIndicators.h"
#include "trelundo/platform/uikit/views/UITouch.h"

#include <deque>

namespace trelundo {

struct UIScrollView::OffsetRanges {
    scroll::Range horizontal;
    scroll::Range vertical;
    CGPoint clamped(CGPoint offset) const {
        return {horizontal.clamped(offset.x), vertical.clamped(offset.y)};
    }
};

/// What a scroll view knows of its finger and of its movement by itself.
struct UIScrollView::State {
    enum class Motion { none, decelerating, animating };
    struct Sample {
        double time;
        CGPoint location; // window points
    };

    explicit State(CALayer& layer)
        : indicators(layer) {}

    /// Notes where the finger is and forgets what is older than `window` seconds.
    void addSample(Sample sample, double window) {
        samples.push_back(sample);
        while (sample.time - samples.front().time > window) samples.pop_front();
    }

    // The finger.
    Ref<UITouch> touch;
    bool isDragging = false;
    bool touchStoppedMotion = false;
    CGPoint start;  // where the touch began
    CGPoint finger; // the position that the offset accounts for
    CGPoint lag;    // the way before the threshold that the content has not made up for yet
    std::deque<Sample> samples;

    // The movement by itself.
    Motion motion = Motion::none;
    int displayLink = 0;
    bool isLinked = false;
    double lastFrame = 0;
    scroll::AxisMotion x;
    scroll::AxisMotion y;
    // Of an animated setting: the whole way, its end, and the offset that it set last.
    CGPoint travel;
    CGPoint goal;
    CGPoint expected;
    double elapsed = 0;

    CGSize lastSize; // at the last layout
    ScrollIndicators indicators;
};

} // namespace trelundo
