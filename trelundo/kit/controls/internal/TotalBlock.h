#pragma once

#include "trelundo/platform/uikit/controls/UIButton.h"

namespace trelundo {

/// The amount at the trailing edge of a plan's row, set off by a hairline. Margins in points from the
/// trailing edge to the label and to the hairline; mirrored in right-to-left layouts.
struct TotalBlock {
    UIView& separator;
    UILabel& label;
    CGSize labelSize;
    double labelMargin;
    double separatorMargin;

    /// Places both in `button`, the label centred vertically.
    void place(UIButton const& button) const;
};

} // namespace trelundo
