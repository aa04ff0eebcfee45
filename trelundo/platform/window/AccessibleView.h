#pragma once

#include "trelundo/platform/foundation/Weak.h"
#include "trelundo/platform/graphics/Geometry.h"
#include "trelundo/platform/uikit/Forward.h"

#include <string>

namespace trelundo {

/// What an assistive program is told of one view.
struct AccessibleView {
    enum class Role { text, button, link, image };
    Weak<UIView> view;
    Role role;
    std::string name; // for people, in their language
    CGRect frame;     // in the shell, host points
    bool isEnabled;
    bool isSelected;
    bool isPressable;
};

} // namespace trelundo
