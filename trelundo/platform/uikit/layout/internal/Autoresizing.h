#pragma once

#include "trelundo/platform/graphics/Geometry.h"
#include "trelundo/platform/uikit/Forward.h"

namespace trelundo {

/// The part of a change of the superview's length by which a view's position and length change.
struct AutoresizingShares {
    double position = 0;
    double length = 0;
};

/// By the view's mask, for its present frame in a superview of `superviewSize`: the flexible parts take
/// shares in proportion to their lengths.
AutoresizingShares autoresizingShares(UIView const& view, CGSize superviewSize, bool vertical);

/// The frame that the view would have without its transform.
CGRect untransformedFrame(UIView const& view);

} // namespace trelundo
