#include "trelundo/platform/coreanimation/internal/ListPainter.h"

#include "trelundo/platform/coreanimation/internal/LayerPicture.h"

namespace trelundo {

namespace {

bool hides(DisplayItem const& item, PixelRect const& area) {
    return !item.picture && item.color.alpha >= 1 && item.visible().contains(area);
}

} // namespace

CGRect ListPainter::points(PixelRect const& rect) const {
    return rect.translated(-x_, -y_).points(canvas_.scale());
}

void ListPainter::paint(DisplayList const& list, PixelRect const& area) {
    canvas_.save();
    canvas_.clip(points(area));
    // What the last covering fill hides need not be painted.
    auto first = list.size();
    while (first > 0 && !hides(list[first - 1], area)) --first;
    if (first == 0) canvas_.clear(points(area));
    paintSteps(list, first == 0 ? 0 : first - 1, area);
    canvas_.restore();
}

void ListPainter::paintOver(DisplayList const& list, PixelRect const& area) {
    canvas_.save();
    canvas_.clip(points(area));
    paintSteps(list, 0, area);
    canvas_.restore();
}

void ListPainter::paintSteps(DisplayList const& list, std::size_t first, PixelRect const& area) {
    for (auto index = first; index < list.size(); ++index) {
        auto const visible = list[index].visible().intersection(area);
        if (!visible.isEmpty()) paintStep(list[index], visible);
    }
}

void ListPainter::paintStep(DisplayItem const& item, PixelRect const& visible) {
    if (!item.picture) return canvas_.fill(points(visible), item.color);
    auto const whole = item.clip.contains(item.rect) && item.opacity >= 1;
    if (whole) return paintPicture(item);
    canvas_.save();
    if (!item.clip.contains(item.rect)) canvas_.clip(points(visible));
    if (item.opacity < 1) canvas_.multiplyOpacity(item.opacity);
    paintPicture(item);
    canvas_.restore();
}

void ListPainter::paintPicture(DisplayItem const& item) {
    auto const& own = item.picture->rect();
    item.picture->paint(canvas_, target_, item.rect.x - own.x - x_, item.rect.y - own.y - y_);
}

} // namespace trelundo
