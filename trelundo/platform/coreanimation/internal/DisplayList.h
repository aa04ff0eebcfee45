#pragma once

#include "trelundo/platform/coreanimation/internal/PixelRect.h"
#include "trelundo/platform/graphics/CGColor.h"

#include <cstdint>
#include <vector>

namespace trelundo {

class LayerPicture;

/// One step of drawing: an area filled with a colour, or a picture put onto whole pixels.
struct DisplayItem {
    std::uint64_t key = 0;           // layer and part: finds the same step again in another frame
    PixelRect rect;                  // everything the step may touch
    PixelRect clip;                  // of the ancestors
    double opacity = 1;              // of a picture
    CGColor color;                   // of a fill
    LayerPicture* picture = nullptr; // null: a fill; valid during the frame that made the list
    std::uint64_t serial = 0;        // of the picture's pixels: equal numbers, equal pixels

    PixelRect visible() const { return rect.intersection(clip); }
    bool looksLike(DisplayItem const& other) const;
    /// The step moved, seen through a further clip and faded.
    DisplayItem moved(int dx, int dy, PixelRect const& within, double fading) const;
};

using DisplayList = std::vector<DisplayItem>;

bool looksLike(DisplayList const& left, DisplayList const& right);
/// The area that the list touches.
PixelRect extent(DisplayList const& list);
/// The areas in which drawing `next` differs from drawing `last`. `frame` is the number of the present frame.
Damage difference(DisplayList const& last, DisplayList const& next, std::uint64_t frame);
/// A number that differs when what the first `count` steps draw inside `area` differs.
std::uint64_t signature(DisplayList const& list, std::size_t count, PixelRect const& area);

} // namespace trelundo
