#pragma once

#include "trelundo/platform/coreanimation/CALayer.h"

#include <cstdint>

namespace trelundo {

/// The parts of a layer that a display list tells apart. Borders without rounding take four numbers.
enum class LayerPart : std::uint64_t {
    shadow,
    backdrop,
    background,
    contents,
    border,
    topBorder,
    leftBorder,
    bottomBorder,
    rightBorder,
    clippedGroup,
    isolatedGroup,
    opacityGroup,
    transformedGroup,
};

inline std::uint64_t displayKey(CALayer const& layer, LayerPart part) {
    return layer.identity() * 16 + static_cast<std::uint64_t>(part);
}

} // namespace trelundo
