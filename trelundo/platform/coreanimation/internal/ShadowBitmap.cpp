#include "trelundo/platform/coreanimation/internal/ShadowBitmap.h"

#include "trelundo/platform/coreanimation/internal/DisplayListPainter.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace trelundo {

void ShadowBitmap::update(DisplayList list, Parameters const& parameters, double scale) {
    auto const same =
        serial_ != 0 && parameters == parameters_ && scale == scale_ && isEquivalent(list, list_);
    list_ = std::move(list);
    if (same) return;
    parameters_ = parameters;
    source_ = extent(list_);
    // Three box passes reach a little less than three deviations, rounded up to the cells that are blurred.
    auto const reach = static_cast<int>(std::ceil(std::min(parameters.deviation, 1000.0) * scale * 3)) + 8;
    auto const moved = source_.translated(nearestPixel(parameters.offset.width * scale),
                                          nearestPixel(parameters.offset.height * scale));
    invalidate(moved.inflated(reach), scale);
}

void ShadowBitmap::render() {
    auto const source = makeSurface(source_);
    DisplayListPainter(*source, source_.x, source_.y).paint(list_, source_);
    allocateSurface();
    Canvas canvas(*surface_);
    canvas.drawShadow(*source, {(source_.x - rect_.x) / scale_, (source_.y - rect_.y) / scale_},
                      parameters_.deviation, {parameters_.offset.width, parameters_.offset.height},
                      parameters_.color);
}

} // namespace trelundo
