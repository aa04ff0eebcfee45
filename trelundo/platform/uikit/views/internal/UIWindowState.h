#pragma once

#include "trelundo/platform/uikit/collection/UIScrollView.h"
#include "trelundo/platform/uikit/controls/UIControl.h"
#include "trelundo/platform/uikit/views/UIWindow.h"

#include <map>
#include <memory>

namespace trelundo {

/// One finger on the window. A scroll view that takes it over has it until the end.
struct UIWindow::ActiveTouch {
    Ref<UITouch> touch;
    std::vector<Weak<UIScrollView>> scrollViews; // that hold the touched view, nearest first
    Weak<UIScrollView> taker;
    bool isTaken = false;
};

struct UIWindow::State {
    std::map<int, std::shared_ptr<ActiveTouch>> touches;
    Weak<UIControl> focused; // by the keyboard
    Ref<CALayer> focusRing;
    bool isLayingOut = false;
};

} // namespace trelundo
