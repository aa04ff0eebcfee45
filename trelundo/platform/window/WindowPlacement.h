#pragma once

#include "trelundo/platform/graphics/Geometry.h"

namespace trelundo {

/// Where a device window stands on the desktop, and why this is told.
struct WindowPlacement {
    enum class Cause { shown, resized };
    Cause cause;
    CGPoint origin; // upper left corner of the content, desktop pixels
    CGSize size;    // of the device as it is shown now, points
    double zoom;    // desktop pixels for a point
};

} // namespace trelundo
