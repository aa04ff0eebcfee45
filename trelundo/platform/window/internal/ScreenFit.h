#pragma once

#include "trelundo/platform/window/EmbeddedShell.h"

namespace trelundo {

/// How the views fit into the place that a host gives them.
struct ScreenFit {
    DeviceProfile profile; // what the screen is
    bool isLandscape = false;
    double zoom = 1; // host points for a point of the views

    static ScreenFit of(EmbeddedScreen const& screen);
    CGPoint viewPoint(CGPoint hostPoint) const { return {hostPoint.x / zoom, hostPoint.y / zoom}; }
};

} // namespace trelundo
