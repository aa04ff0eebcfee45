#pragma once

#include "trelundo/platform/graphics/Geometry.h"

#include <memory>
#include <vector>

namespace trelundo {

class CALayer;
class Surface;

/// Draws a layer tree into a surface. It remembers what it drew: a further frame repaints only what has
/// changed, and contents that cost much (texts, scaled and rounded bitmaps) are kept as bitmaps.
class Compositor {
public:
    Compositor();
    ~Compositor();

    /// Brings `surface` up to the present state of the tree under `root`. Returns the repainted areas in
    /// pixels (empty when nothing changed). A different surface, or invalidate(), repaints everything.
    std::vector<CGRect> render(CALayer& root, Surface& surface);
    void invalidate();

    /// Draws one subtree, in its own coordinates, into a canvas of its own (snapshots, shadows).
    static void draw(CALayer& layer, Surface& surface);

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace trelundo
