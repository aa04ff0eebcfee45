#include "trelundo/platform/coreanimation/internal/DisplayListPainter.h"

#include "trelundo/platform/coreanimation/internal/LayerBitmap.h"

namespace trelundo {

namespace {

bool hides(DisplayItem const& item, PixelRect const& area) {
    return !item.bitmap && item.color.alpha >= 1 && item.visible().contains(area);
}

} // namespace

CGRect DisplayListPainter::points(PixelRect const& rect) const {
    return rect.translated(-x_, -y_).points(canvas_.scale());
}

void DisplayListPainter::paint(DisplayList const& list, PixelRect const& area) {
    canvas_.save();
    canvas_.clip(points(area));
    // What the last covering fill hides need not be painted.
    auto first = list.size();
    while (first > 0 && !hides(list[first - 1], area)) --first;
    if (first == 0) canvas_.clear(points(area));
    paintItems(list, first == 0 ? 0 : first - 1, area);
    canvas_.restore();
}

void DisplayListPainter::paintOver(DisplayList const& list, PixelRect const& area) {
    canvas_.save();
    canvas_.clip(points(area));
    paintItems(list, 0, area);
    canvas_.restore();
}

void DisplayListPainter::paintItems(DisplayList const& list, std::size_t first, PixelRect const& area) {
    for (auto index = first; index < list.size(); ++index) {
        auto const visible = list[index].visible().intersection(area);
        if (!visible.isEmpty()) paintItem(list[index], visible);
    }
}

void DisplayListPainter::paintItem(DisplayItem const& item, PixelRect const& visible) {
    if (!item.bitmap) return canvas_.fill(points(visible), item.color);
    auto const whole = item.clip.contains(item.rect) && item.opacity >= 1;
    if (whole) return paintBitmap(item);
    canvas_.save();
    if (!item.clip.contains(item.rect)) canvas_.clip(points(visible));
    if (item.opacity < 1) canvas_.multiplyOpacity(item.opacity);
    paintBitmap(item);
    canvas_.restore();
}

void DisplayListPainter::paintBitmap(DisplayItem const& item) {
    auto const& own = item.bitmap->rect();
    item.bitmap->paint(canvas_, target_, item.rect.x - own.x - x_, item.rect.y - own.y - y_);
}

} // namespace trelundo
