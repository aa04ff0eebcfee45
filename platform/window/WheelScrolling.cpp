#include "platform/window/WheelScrolling.h"

#include "platform/uikit/collection/UIScrollView.h"

#include <algorithm>

namespace trelundo {

namespace {

struct OffsetRange {
    CGPoint minimum, maximum;

    explicit OffsetRange(UIScrollView const& view) {
        auto const insets = view.adjustedContentInset();
        auto const content = view.contentSize();
        auto const visible = view.bounds().size;
        minimum = {-insets.left, -insets.top};
        maximum = {std::max(minimum.x, content.width - visible.width + insets.right),
                   std::max(minimum.y, content.height - visible.height + insets.bottom)};
    }
    bool scrollsSidewaysOnly() const { return maximum.x > minimum.x && maximum.y <= minimum.y; }
};

/// `offset` moved by `distance`; where it already lies beyond an edge it is not pulled back.
double moved(double offset, double distance, double minimum, double maximum) {
    if (distance > 0) return std::max(offset, std::min(maximum, offset + distance));
    return std::min(offset, std::max(minimum, offset + distance));
}

bool scrollWithin(UIScrollView& view, double dx, double dy) {
    if (!view.isScrollEnabled()) return false;
    OffsetRange const range(view);
    if (dx == 0 && range.scrollsSidewaysOnly()) std::swap(dx, dy);
    auto const offset = view.contentOffset();
    CGPoint const target{moved(offset.x, dx, range.minimum.x, range.maximum.x),
                         moved(offset.y, dy, range.minimum.y, range.maximum.y)};
    if (target == offset) return false;
    view.setContentOffset(target);
    return true;
}

} // namespace

bool scrollByWheel(UIWindow& window, CGPoint location, double dx, double dy) {
    auto const hit = window.hitTest(location);
    for (auto* view = hit.get(); view; view = view->superview()) {
        auto* const scrollView = dynamic_cast<UIScrollView*>(view);
        if (scrollView && scrollWithin(*scrollView, dx, dy)) return true;
    }
    return false;
}

} // namespace trelundo
