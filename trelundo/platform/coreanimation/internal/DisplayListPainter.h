#pragma once

#include "trelundo/platform/coreanimation/internal/DisplayList.h"
#include "trelundo/platform/graphics/Canvas.h"

namespace trelundo {

/// Paints display lists into a surface whose corner is at (x, y) of the list's pixels.
class DisplayListPainter {
public:
    DisplayListPainter(Surface& target, int x, int y)
        : target_(target)
        , canvas_(target)
        , x_(x)
        , y_(y) {}

    /// Paints `area` from nothing.
    void paint(DisplayList const& list, PixelRect const& area);
    /// Paints over what is there.
    void paintOver(DisplayList const& list, PixelRect const& area);

private:
    void paintItems(DisplayList const& list, std::size_t first, PixelRect const& area);
    void paintItem(DisplayItem const& item, PixelRect const& visible);
    void paintBitmap(DisplayItem const& item);
    CGRect points(PixelRect const& rect) const;

    Surface& target_;
    Canvas canvas_;
    int x_, y_;
};

} // namespace trelundo
