#pragma once

#include "trelundo/platform/coreanimation/CAMediaTimingFunction.h"

#include <functional>

namespace trelundo {

/// Collects the animations that property changes of layers start. Outside begin/commit nothing animates.
/// Animations of one property add up; each ends in its own time. Main thread only; time is Clock::current().
class CATransaction {
public:
    struct Settings {
        double duration = 0.25; // seconds; 0 or less: changes are immediate
        double delay = 0;       // seconds before the shown value starts to move
        CAMediaTimingFunction timing = CAMediaTimingFunction::easeInEaseOut();
        bool repeats = false;
        bool autoreverses = false;
        /// Inside another transaction: that one's duration and timing count instead of these.
        bool inherits = true;
        /// Called on the main thread once all animations have ended: true when they ran to their end. Never
        /// inside commit(); with nothing to animate at the next frame or turn, whichever comes first.
        std::function<void(bool finished)> completion;
    };

    static void begin(Settings settings);
    static void commit();
    /// Whether a transaction with a positive duration is open.
    static bool isAnimating();
    static Settings const* current();
    /// While false, durations count as zero; completions still come.
    static void setAnimationsEnabled(bool enabled);
    static bool areAnimationsEnabled();

    /// Ends what has run its time at the present moment and calls the completions, in the order of ending,
    /// then of creation. Shells call it once a frame, before the frame's main-queue turn.
    static void advanceFrame();
    /// Whether anything is running or waiting for its completion, so that a shell must produce frames.
    static bool hasWork();
};

} // namespace trelundo
