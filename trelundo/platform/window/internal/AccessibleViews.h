#pragma once

#include "trelundo/platform/uikit/views/UIWindow.h"
#include "trelundo/platform/window/AccessibleView.h"

#include <vector>

namespace trelundo {

/// The labelled and pressable views of a window as a flat list in reading order of the view tree. A button
/// hides what it is made of.
std::vector<UIView*> accessibleViews(UIWindow const& window);

/// What to tell of `view`, with its frame at `zoom` host points for a point.
AccessibleView describeAccessible(UIView& view, double zoom);

/// Does what a tap on the view would do. A control that is disabled does nothing.
void pressAccessible(UIView& view);

} // namespace trelundo
