#pragma once

#include "trelundo/platform/coreanimation/internal/PixelRect.h"

#include <vector>

namespace trelundo {

/// The areas of a bitmap that must be painted anew: a short list of rectangles, merged where that costs
/// little.
class Damage {
public:
    void add(PixelRect const& rect);
    /// Unites everything that touches `rect` with it, so that one rectangle holds it whole. Returns whether
    /// the damage grew.
    bool absorb(PixelRect const& rect);
    bool intersects(PixelRect const& rect) const;
    bool isEmpty() const { return rects_.empty(); }
    void clear() { rects_.clear(); }
    std::vector<PixelRect> const& rects() const { return rects_; }

private:
    void mergeCheapest();
    std::vector<PixelRect> rects_;
};

} // namespace trelundo
