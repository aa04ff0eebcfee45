#include "trelundo/platform/coreanimation/internal/IsolatedGroupBitmap.h"

#include "trelundo/platform/coreanimation/internal/DisplayListPainter.h"

#include <utility>

namespace trelundo {

void IsolatedGroupBitmap::update(DisplayList list, PixelRect const& rect, CornerRadii const& radii,
                                 std::uint64_t behind, double scale) {
    auto const same = serial_ != 0 && rect == rect_ && radii == radii_ && behind == behind_ &&
                      scale == scale_ && isEquivalent(list, list_);
    list_ = std::move(list);
    radii_ = radii;
    behind_ = behind;
    if (!same) invalidate(rect, scale);
}

void IsolatedGroupBitmap::paint(Canvas& canvas, Surface& target, int x, int y) {
    CGPoint const corner{(x + rect_.x) / scale_, (y + rect_.y) / scale_};
    if (surface_) return canvas.drawSurface(*surface_, corner);
    auto const inside = makeSurface();
    {
        Canvas copy(*inside);
        copy.drawSurface(target, {-corner.x, -corner.y});
    }
    for (auto const& item : list_) {
        // Effects inside know only of changes inside.
        if (item.bitmap && item.bitmap->dependsOnBackdrop()) item.bitmap->discardPixels();
    }
    DisplayListPainter(*inside, rect_.x, rect_.y).paintOver(list_, rect_);
    canvas.drawSurface(*inside, corner, radii_);
    surface_ = makeSurface();
    Canvas copy(*surface_);
    copy.drawSurface(target, {-corner.x, -corner.y});
}

} // namespace trelundo
