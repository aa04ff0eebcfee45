#pragma once

#include "trelundo/platform/foundation/internal/Context.h"
#include "trelundo/platform/uikit/Forward.h"

#include <vector>

namespace trelundo {

/// The visible windows of a shell.
struct ShownWindows {
    std::vector<UIWindow*> all;  // in the order in which they became visible
    UIWindow* key = nullptr;     // the one that was made key last
    UIView* keyAsView = nullptr; // the same, for those who do not know windows

    void remove(UIWindow& window) {
        std::erase(all, &window);
        if (key != &window) return;
        key = nullptr;
        keyAsView = nullptr;
    }

    static ShownWindows& current() { return Context::current().part<ShownWindows>(); }
};

} // namespace trelundo
