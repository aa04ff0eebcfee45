#pragma once

#include <functional>
#include <memory>

namespace trelundo {

class CALayer;

/// A cubic timing curve from (0, 0) to (1, 1) by its two control points.
struct CAMediaTimingFunction {
    double x1, y1, x2, y2;
    double valueAt(double fraction) const;

    static constexpr CAMediaTimingFunction linear() { return {0, 0, 1, 1}; }
    static constexpr CAMediaTimingFunction easeIn() { return {0.42, 0, 1, 1}; }
    static constexpr CAMediaTimingFunction easeOut() { return {0, 0, 0.58, 1}; }
    static constexpr CAMediaTimingFunction easeInEaseOut() { return {0.42, 0, 0.58, 1}; }
};

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
    /// Drops everything without completions (a test's clean slate).
    static void reset();
};

} // namespace trelundo
