#pragma once

#include "trelundo/platform/coreanimation/internal/PictureStore.h"

namespace trelundo {

/// Turns a layer tree, as shown at one moment, into a display list. What must be combined before it can be
/// drawn (faded, rounded, turned subtrees) becomes one picture; everything stands on whole pixels.
class Flattener {
public:
    /// `scale`: pixels a point; `time`: of Clock::now().
    Flattener(PictureStore& store, double scale, double time)
        : store_(store)
        , scale_(scale)
        , time_(time) {}

    /// `root` with the top left corner of its bounds at the origin; what lies outside `target` is left out.
    DisplayList flatten(CALayer& root, PixelRect const& target);

private:
    /// Where something stands while the tree is walked.
    struct Place {
        double x, y; // pixels: of a layer's top left corner, or of the origin of its superlayer's coordinates
        PixelRect clip;
        bool live; // whether what lies behind is at hand, for effects
    };
    /// One layer on its way into the list.
    struct Node {
        CALayer& layer;
        CALayerValues values;
        double width, height; // pixels
        CornerRadii radii;
        bool inCut = false; // its corners are cut by the group around it
    };

    void addLayer(CALayer& layer, Place const& origin, DisplayList& list);
    void addTurned(Node const& node, Place const& anchor, DisplayList& list);
    void addFaded(Node const& node, Place const& place, DisplayList& list);
    void addShadowed(Node const& node, Place const& place, DisplayList& list);
    void addCut(Node const& node, Place const& place, DisplayList& list);
    void addBody(Node const& node, Place const& place, DisplayList& list);
    void addBackdrop(Node const& node, Place const& place, DisplayList& list);
    void addOwn(Node const& node, Place const& place, DisplayList& list);
    void addContents(Node const& node, Place const& place, std::optional<CGColor> background,
                     DisplayList& list);
    void addBorder(Node const& node, Place const& place, DisplayList& list);
    void addStraightBorder(Node const& node, Place const& place, DisplayList& list);
    void addSublayers(Node const& node, Place const& place, DisplayList& list);

    void addFill(Node const& node, LayerPart part, PixelRect const& rect, Place const& place,
                 CGColor const& color, DisplayList& list);
    /// Appends a list made at the origin.
    void append(DisplayList const& steps, Place const& place, double fading, DisplayList& list);
    void appendGroup(Node const& node, LayerPart part, DisplayList steps, CornerRadii const& radii,
                     double opacity, Place const& place, DisplayList& list);
    void appendPicture(LayerPicture& picture, std::uint64_t key, Place const& place, double opacity,
                       DisplayList& list);

    PixelRect shape(Node const& node) const;
    PixelRect edges(Node const& node, Place const& place) const;
    bool isTooLarge(PixelRect const& rect) const;
    Place inside(Place const& outside) const { return {0, 0, PixelRect::unlimited(), outside.live}; }

    PictureStore& store_;
    double scale_;
    double time_;
    PixelRect target_;
};

} // namespace trelundo
