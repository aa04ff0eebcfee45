#include "trelundo/platform/uikit/accessibility/ActivityChanges.h"

#include <utility>

namespace trelundo {

namespace {

using Listener = std::function<void(UIActivityIndicatorView&, bool)>;

Listener& listener() {
    static Listener current;
    return current;
}

} // namespace

void setActivityChangeListener(Listener newListener) { listener() = std::move(newListener); }

void activityDidChange(UIActivityIndicatorView& view, bool animating) {
    // A copy, because the listener may replace itself while it runs.
    if (auto const current = listener()) current(view, animating);
}

} // namespace trelundo
