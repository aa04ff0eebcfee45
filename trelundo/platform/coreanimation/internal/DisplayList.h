#pragma once

#include "trelundo/platform/coreanimation/internal/Damage.h"
#include "trelundo/platform/graphics/CGColor.h"

#include <cstdint>
#include <vector>

namespace trelundo {

class LayerBitmap;

/// One item of drawing: an area filled with a colour, or a bitmap put onto whole pixels.
struct DisplayItem {
    std::uint64_t key = 0;         // layer and part: finds the same item again in another frame
    PixelRect rect;                // everything the item may touch
    PixelRect clip;                // of the ancestors
    double opacity = 1;            // of a bitmap
    CGColor color;                 // of a fill
    LayerBitmap* bitmap = nullptr; // null: a fill; valid during the frame that made the list
    std::uint64_t serial = 0;      // of the bitmap's pixels: equal numbers, equal pixels

    PixelRect visible() const { return rect.intersection(clip); }
    bool isEquivalent(DisplayItem const& other) const;
    /// The item moved, seen through a further clip and faded.
    DisplayItem moved(int dx, int dy, PixelRect const& within, double fading) const;
};

using DisplayList = std::vector<DisplayItem>;

bool isEquivalent(DisplayList const& left, DisplayList const& right);
/// The area that the list touches.
PixelRect extent(DisplayList const& list);
/// The areas in which drawing `next` differs from drawing `last`. `frame` is the number of the present frame.
Damage difference(DisplayList const& last, DisplayList const& next, std::uint64_t frame);
/// A number that differs when what the first `count` items draw inside `area` differs.
std::uint64_t signature(DisplayList const& list, std::size_t count, PixelRect const& area);

} // namespace trelundo
