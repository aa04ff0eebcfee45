#pragma once

#include "trelundo/platform/uikit/Forward.h"

#include <functional>

namespace trelundo {

/// Tells one listener whenever an activity indicator starts or stops, at the moment of the change. A null
/// function ends listening.
void setActivityChangeListener(std::function<void(UIActivityIndicatorView& view, bool animating)> listener);
void activityDidChange(UIActivityIndicatorView& view, bool animating);

} // namespace trelundo
