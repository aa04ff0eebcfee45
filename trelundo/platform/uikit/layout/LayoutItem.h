#pragma once

#include "trelundo/platform/uikit/Forward.h"

#include <string>

namespace trelundo {

/// What a constraint may name: a view or a layout guide.
class LayoutItem {
public:
    virtual ~LayoutItem() = default;

    /// The view itself; a guide's owning view, null without one.
    virtual UIView* layoutView() = 0;
    /// The guide; null for a view.
    virtual UILayoutGuide* layoutGuide() = 0;
    /// How reports call it: its identifier, else its class.
    virtual std::string layoutName() const = 0;
};

} // namespace trelundo
