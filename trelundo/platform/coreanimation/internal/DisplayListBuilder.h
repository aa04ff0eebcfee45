#pragma once

#include "trelundo/platform/coreanimation/CALayer.h"
#include "trelundo/platform/coreanimation/internal/BitmapCache.h"
#include "trelundo/platform/coreanimation/internal/LayerPart.h"

namespace trelundo {

/// Turns a layer tree, as shown at one moment, into a display list. What must be combined before it can be
/// drawn (subtrees with opacity, rounded corners or a transform) becomes one bitmap; everything stands on
/// whole pixels.
class DisplayListBuilder {
public:
    /// `scale`: pixels a point; `time`: of Clock::now().
    DisplayListBuilder(BitmapCache& cache, double scale, double time)
        : cache_(cache)
        , scale_(scale)
        , time_(time) {}

    /// `root` with the top left corner of its bounds at the origin; what lies outside `target` is left out.
    DisplayList build(CALayer& root, PixelRect const& target);

private:
    /// Where something stands while the tree is walked.
    struct PaintContext {
        double x, y; // pixels: of a layer's top left corner, or of the origin of its superlayer's coordinates
        PixelRect clip;
        bool hasBackdrop; // whether what lies behind is at hand, for effects
    };
    /// One layer on its way into the list.
    struct Node {
        CALayer& layer;
        CALayerValues values;
        double width, height; // pixels
        CornerRadii radii;
        bool isClippedByGroup = false; // the group around it clips its corners
    };

    void addLayer(CALayer& layer, PaintContext const& origin, DisplayList& list);
    void addTransformed(Node const& node, PaintContext const& anchor, DisplayList& list);
    void addWithOpacity(Node const& node, PaintContext const& context, DisplayList& list);
    void addWithShadow(Node const& node, PaintContext const& context, DisplayList& list);
    void addClipped(Node const& node, PaintContext const& context, DisplayList& list);
    void addBody(Node const& node, PaintContext const& context, DisplayList& list);
    void addBackdrop(Node const& node, PaintContext const& context, DisplayList& list);
    void addBackgroundAndContents(Node const& node, PaintContext const& context, DisplayList& list);
    void addContents(Node const& node, PaintContext const& context, std::optional<CGColor> background,
                     DisplayList& list);
    void addBorder(Node const& node, PaintContext const& context, DisplayList& list);
    void addSquareBorder(Node const& node, PaintContext const& context, DisplayList& list);
    void addSublayers(Node const& node, PaintContext const& context, DisplayList& list);

    void addFill(Node const& node, LayerPart part, PixelRect const& rect, PaintContext const& context,
                 CGColor const& color, DisplayList& list);
    /// Appends a list made at the origin.
    void append(DisplayList const& items, PaintContext const& context, double opacity, DisplayList& list);
    void appendGroup(Node const& node, LayerPart part, DisplayList items, CornerRadii const& radii,
                     double opacity, PaintContext const& context, DisplayList& list);
    void appendBitmap(LayerBitmap& bitmap, std::uint64_t key, PaintContext const& context, double opacity,
                      DisplayList& list);

    PixelRect pixelBounds(Node const& node) const;
    PixelRect pixelFrame(Node const& node, PaintContext const& context) const;
    bool isTooLarge(PixelRect const& rect) const;
    /// For what is drawn by itself before it is put into its place.
    static PaintContext groupContext(bool hasBackdrop) { return {0, 0, PixelRect::unlimited(), hasBackdrop}; }

    BitmapCache& cache_;
    double scale_;
    double time_;
    PixelRect target_;
};

} // namespace trelundo
