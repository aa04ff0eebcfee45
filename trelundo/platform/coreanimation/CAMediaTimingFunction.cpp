#include "trelundo/platform/coreanimation/CAMediaTimingFunction.h"

namespace trelundo {

namespace {

/// One coordinate of the timing curve with the inner control points `p1` and `p2`.
double cubic(double p1, double p2, double t) {
    auto const rest = 1 - t;
    return 3 * rest * rest * t * p1 + 3 * rest * t * t * p2 + t * t * t;
}

} // namespace

double CAMediaTimingFunction::valueAt(double fraction) const {
    if (fraction <= 0) return 0;
    if (fraction >= 1) return 1;
    if (x1 == y1 && x2 == y2) return fraction;
    double low = 0, high = 1;
    for (int step = 0; step < 48; ++step) {
        auto const middle = (low + high) / 2;
        (cubic(x1, x2, middle) < fraction ? low : high) = middle;
    }
    return cubic(y1, y2, (low + high) / 2);
}

} // namespace trelundo
