#include "trelundo/platform/coreanimation/internal/BackdropBitmap.h"

namespace trelundo {

void BackdropBitmap::update(Parameters const& parameters, double scale) {
    if (serial_ != 0 && parameters == parameters_ && scale == scale_) return;
    parameters_ = parameters;
    invalidate(parameters.visible, scale);
}

void BackdropBitmap::paint(Canvas& canvas, Surface& target, int x, int y) {
    if (surface_) return canvas.drawSurface(*surface_, {(x + rect_.x) / scale_, (y + rect_.y) / scale_});
    auto const shape = parameters_.shape.translated(x, y).points(scale_);
    canvas.blurBackdrop(shape, parameters_.radii, parameters_.effect.blurRadius,
                        parameters_.effect.saturation, parameters_.effect.overlay);
    surface_ = makeSurface();
    Canvas copy(*surface_);
    copy.drawSurface(target, {-(x + rect_.x) / scale_, -(y + rect_.y) / scale_});
}

} // namespace trelundo
