#pragma once

#include "trelundo/platform/graphics/Geometry.h"
#include "trelundo/platform/uikit/layout/UIViewAutoresizing.h"

namespace trelundo {

/// The part of a change of the superview's length by which a view's position and length change.
struct AutoresizingShares {
    double position = 0;
    double length = 0;
};

/// Of a view with `mask` that has `frame` in a superview of `superviewSize`: the flexible parts take shares
/// in proportion to their lengths.
AutoresizingShares autoresizingShares(UIViewAutoresizing mask, CGRect frame, CGSize superviewSize,
                                      bool vertical);

} // namespace trelundo
