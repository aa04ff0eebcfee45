#pragma once

#include "trelundo/platform/uikit/Forward.h"

#include <functional>
#include <string>

namespace trelundo {

/// Tells one listener whenever the text that a label or button shows changes, at the moment of the change.
/// The view is the label, or the button for its title. A null function ends listening.
void setTextChangeListener(std::function<void(UIView& view, std::string const& text)> listener);
void textDidChange(UIView& view, std::string const& text);

} // namespace trelundo
