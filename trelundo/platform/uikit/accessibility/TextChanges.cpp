#include "trelundo/platform/uikit/accessibility/TextChanges.h"

#include <utility>

namespace trelundo {

namespace {

using Listener = std::function<void(UIView&, std::string const&)>;

Listener& listener() {
    static Listener current;
    return current;
}

} // namespace

void setTextChangeListener(Listener newListener) { listener() = std::move(newListener); }

void textDidChange(UIView& view, std::string const& text) {
    // A copy, because the listener may replace itself while it runs.
    if (auto const current = listener()) current(view, text);
}

} // namespace trelundo
