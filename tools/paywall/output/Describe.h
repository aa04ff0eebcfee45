#pragma once

#include "tools/paywall/output/Json.h"
#include "trelundo/platform/uikit/controllers/UIViewController.h"

namespace trelundo::paywall {

/// The laid-out view tree of `controller` as nested objects, frames in window points. What the controller
/// presents (an alert) stands under `presented` of the root.
Json describe(UIViewController& controller);

} // namespace trelundo::paywall
