#include "trelundo/platform/coreanimation/internal/TransformedBitmap.h"

#include "trelundo/platform/coreanimation/internal/DisplayListPainter.h"

#include <utility>

namespace trelundo {

void TransformedBitmap::update(DisplayList list, Parameters const& parameters, double scale) {
    auto const same =
        serial_ != 0 && parameters == parameters_ && scale == scale_ && isEquivalent(list, list_);
    list_ = std::move(list);
    parameters_ = parameters;
    if (!same) invalidate(parameters.rect, scale);
}

void TransformedBitmap::render() {
    auto const& source = parameters_.source;
    auto const upright = makeSurface(source);
    DisplayListPainter(*upright, source.x, source.y).paint(list_, source);
    allocateSurface();
    Canvas canvas(*surface_);
    canvas.translate(-rect_.x / scale_, -rect_.y / scale_);
    canvas.concatenate(parameters_.linear);
    canvas.drawSurfaceScaled(*upright, {(source.x - parameters_.anchorX) / scale_,
                                        (source.y - parameters_.anchorY) / scale_, source.width / scale_,
                                        source.height / scale_});
}

} // namespace trelundo
