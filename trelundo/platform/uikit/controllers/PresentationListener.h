#pragma once

#include "trelundo/platform/uikit/Forward.h"

#include <functional>

namespace trelundo {

/// Hears of the controllers that come and go, alerts among them.
struct PresentationListener {
    /// An accepted presentation begins, inside the call of present(); the view may not be loaded yet.
    std::function<void(UIViewController& controller, bool animated)> presented = nullptr;
    /// A dismissal has ended: after the did-disappear callback, before the caller's completion and before an
    /// alert's handler. Whatever vanishes together is told of from the top down.
    std::function<void(UIViewController& controller, bool animated)> dismissed = nullptr;
};

/// Replaces the one listener of the process; an empty one ends listening.
void setPresentationListener(PresentationListener listener);

} // namespace trelundo
