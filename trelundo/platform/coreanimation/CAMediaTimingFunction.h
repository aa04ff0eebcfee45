#pragma once

namespace trelundo {

/// A cubic timing curve from (0, 0) to (1, 1) by its two control points.
struct CAMediaTimingFunction {
    double x1, y1, x2, y2;
    double valueAt(double fraction) const;

    static constexpr CAMediaTimingFunction linear() { return {0, 0, 1, 1}; }
    static constexpr CAMediaTimingFunction easeIn() { return {0.42, 0, 1, 1}; }
    static constexpr CAMediaTimingFunction easeOut() { return {0, 0, 0.58, 1}; }
    static constexpr CAMediaTimingFunction easeInEaseOut() { return {0.42, 0, 0.58, 1}; }
};

} // namespace trelundo
