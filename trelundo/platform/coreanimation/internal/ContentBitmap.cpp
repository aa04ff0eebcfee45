#include "trelundo/platform/coreanimation/internal/ContentBitmap.h"

namespace trelundo {

bool ContentBitmap::Parameters::drawsLike(Parameters const& other) const {
    return hasContents == other.hasContents && isDirect == other.isDirect && version == other.version &&
           bounds == other.bounds && shownSize == other.shownSize && shape == other.shape &&
           rect == other.rect && background == other.background && borderWidth == other.borderWidth &&
           borderColor == other.borderColor && radii == other.radii && scale == other.scale;
}

void ContentBitmap::update(Parameters const& parameters) {
    auto const same = serial() != 0 && parameters.drawsLike(parameters_);
    parameters_ = parameters;
    if (!same) invalidate(parameters.rect, parameters.scale);
}

void ContentBitmap::draw(Canvas& canvas) const {
    auto const shape = parameters_.shape.points(scale_);
    if (parameters_.background) canvas.fillRounded(shape, parameters_.radii, *parameters_.background);
    if (parameters_.hasContents) {
        canvas.save();
        // Contents are drawn for the assigned size and stretched while the size is on its way.
        auto const assigned = parameters_.bounds.size;
        if (assigned != parameters_.shownSize && assigned.width > 0 && assigned.height > 0) {
            canvas.concatenate(CGAffineTransform::scale(parameters_.shownSize.width / assigned.width,
                                                        parameters_.shownSize.height / assigned.height));
        }
        canvas.translate(-parameters_.bounds.origin.x, -parameters_.bounds.origin.y);
        parameters_.layer->drawContents(canvas);
        canvas.restore();
    }
    if (parameters_.borderWidth > 0)
        canvas.strokeRounded(shape, parameters_.radii, parameters_.borderWidth, parameters_.borderColor);
}

void ContentBitmap::render() {
    allocateSurface();
    {
        Canvas canvas(*surface_);
        canvas.translate(-rect_.x / scale_, -rect_.y / scale_);
        draw(canvas);
    }
    if (parameters_.hasContents) trim();
}

void ContentBitmap::paint(Canvas& canvas, Surface& target, int x, int y) {
    if (!parameters_.isDirect) return LayerBitmap::paint(canvas, target, x, y);
    canvas.save();
    canvas.clip(rect_.translated(x, y).points(scale_));
    canvas.translate(x / scale_, y / scale_);
    draw(canvas);
    canvas.restore();
}

} // namespace trelundo
