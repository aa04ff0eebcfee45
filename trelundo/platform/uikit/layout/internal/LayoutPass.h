#pragma once

#include "trelundo/platform/graphics/Geometry.h"
#include "trelundo/platform/uikit/Forward.h"

namespace trelundo {

/// One run of the layout cycle: constraints from leaves to root, solving, then layout from root to leaves,
/// until nothing is marked any more.
class LayoutPass {
public:
    /// Constraints and solving for the view's whole tree, layout from the topmost marked view above `view`
    /// down.
    static void run(UIView& view);
    static CGSize fittingSize(UIView& view, CGSize target);

private:
    static void updateConstraints(UIView& root);
    static void updateConstraintsBelow(UIView& view);
    static void checkWindowSafeArea(UIView& root, LayoutEngine& engine);
    static void updateKnownSafeAreas(UIView& view, bool superviewIsStale);
    static void visit(UIView& view, bool superviewIsStale);
    static void layOut(UIView& view);
};

} // namespace trelundo
