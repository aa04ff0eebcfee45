#pragma once

#include "trelundo/platform/coreanimation/CALayer.h"

#include <algorithm>

namespace trelundo {

/// The radii that a layer's corners are drawn with; a negative radius counts as 0.
inline CornerRadii cornerRadii(double radius, CACornerMask corners) {
    auto const at = [&](CACornerMask corner) {
        auto const bit = static_cast<unsigned>(corners) & static_cast<unsigned>(corner);
        return bit != 0 ? std::max(0.0, radius) : 0.0;
    };
    return {at(CACornerMask::minXMinY), at(CACornerMask::maxXMinY), at(CACornerMask::minXMaxY),
            at(CACornerMask::maxXMaxY)};
}

} // namespace trelundo
