#pragma once

#include "trelundo/platform/uikit/views/UIWindow.h"

namespace trelundo {

/// Scrolls the innermost scroll view under `location` that has room in the direction of (dx, dy) points,
/// positive toward later content, within its edges. A vertical wheel also moves a strip that scrolls only
/// sideways. Returns whether anything moved.
bool scrollByWheel(UIWindow& window, CGPoint location, double dx, double dy);

} // namespace trelundo
