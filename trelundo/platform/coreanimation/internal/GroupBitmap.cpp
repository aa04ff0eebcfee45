#include "trelundo/platform/coreanimation/internal/GroupBitmap.h"

#include "trelundo/platform/coreanimation/internal/DisplayListPainter.h"

#include <utility>

namespace trelundo {

void GroupBitmap::update(DisplayList list, PixelRect const& rect, CornerRadii const& radii, double scale,
                         std::uint64_t frame) {
    auto const last = std::exchange(list_, std::move(list));
    if (serial_ == 0 || rect != rect_ || radii != radii_ || scale != scale_) {
        radii_ = radii;
        changedFrame_ = 0;
        return invalidate(rect, scale);
    }
    auto changes = difference(last, list_, frame);
    if (changes.isEmpty()) return;
    changes_ = std::move(changes);
    for (auto const& part : changes_.rects()) dirty_.add(part);
    isRendered_ = false;
    changedFrame_ = frame;
    previousSerial_ = serial_;
    renewSerial();
}

Damage const* GroupBitmap::changesSince(std::uint64_t serial, std::uint64_t frame) const {
    return changedFrame_ == frame && previousSerial_ == serial ? &changes_ : nullptr;
}

void GroupBitmap::discardPixels() {
    LayerBitmap::discardPixels();
    dirty_.clear();
}

void GroupBitmap::render() {
    if (!surface_) {
        allocateSurface();
        dirty_.clear();
        dirty_.add(rect_);
    }
    // Cutting needs the unclipped pixels beside the cut ones, but only until they are cut.
    auto const unclipped = radii_.isZero() ? nullptr : makeSurface();
    for (auto const& part : dirty_.rects()) {
        auto const area = part.intersection(rect_);
        DisplayListPainter(unclipped ? *unclipped : *surface_, rect_.x, rect_.y).paint(list_, area);
        if (!unclipped) continue;
        Canvas canvas(*surface_);
        auto const place = area.translated(-rect_.x, -rect_.y).points(scale_);
        canvas.clip(place);
        canvas.clear(place);
        canvas.drawSurface(*unclipped, {}, radii_);
    }
    dirty_.clear();
}

} // namespace trelundo
