#pragma once

#include "trelundo/platform/uikit/views/UIView.h"

#include <string>

namespace trelundo::paywall {

/// The text that a label or a button shows; empty for any other view.
std::string visibleText(UIView const& view);

} // namespace trelundo::paywall
