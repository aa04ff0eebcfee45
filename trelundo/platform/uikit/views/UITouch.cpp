#include "trelundo/platform/uikit/views/UITouch.h"

#include "trelundo/platform/uikit/views/UIView.h"

namespace trelundo {

CGPoint UITouch::locationIn(UIView const& view) const { return view.convertPointFrom(location_, nullptr); }

} // namespace trelundo
