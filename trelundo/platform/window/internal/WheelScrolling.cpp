#include "trelundo/platform/window/internal/WheelScrolling.h"

#include "trelundo/platform/uikit/collection/UIScrollView.h"

namespace trelundo {

namespace {

/// A wheel that turns one way only moves a strip that scrolls sideways, too.
bool scrollsSidewaysOnly(UIScrollView const& view) {
    auto const low = view.minimumOffset();
    auto const high = view.maximumOffset();
    return high.x > low.x && high.y <= low.y;
}

} // namespace

bool scrollByWheel(UIWindow& window, CGPoint location, double dx, double dy) {
    auto const hit = window.hitTest(location);
    for (auto* view = hit.get(); view; view = view->superview()) {
        auto* const scrollView = dynamic_cast<UIScrollView*>(view);
        if (!scrollView) continue;
        bool const turned = dx == 0 && scrollsSidewaysOnly(*scrollView);
        if (scrollView->scrollBy(turned ? CGPoint{dy, 0} : CGPoint{dx, dy})) return true;
    }
    return false;
}

} // namespace trelundo
