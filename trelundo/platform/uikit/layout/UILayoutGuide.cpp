#include "trelundo/platform/uikit/layout/UILayoutGuide.h"

#include "trelundo/platform/uikit/layout/internal/LayoutItem.h"
#include "trelundo/platform/uikit/views/UIView.h"

namespace trelundo {

CGRect UILayoutGuide::layoutFrame() const {
    if (kind_ == Kind::constrained || !owningView_) return layoutFrame_;
    auto const insets =
        kind_ == Kind::safeArea ? owningView_->safeAreaInsets() : owningView_->layoutMargins();
    return CGRect{{}, owningView_->bounds().size}.insetBy(insets);
}

bool isLayoutItem(NSObject& item) { return dynamic_cast<UIView*>(&item) || layoutGuide(item); }

UILayoutGuide* layoutGuide(NSObject& item) { return dynamic_cast<UILayoutGuide*>(&item); }

std::string layoutItemName(NSObject& item) {
    if (auto* const guide = layoutGuide(item)) {
        auto const owner = guide->owningView() ? layoutItemName(*guide->owningView()) + '.' : std::string{};
        return owner + (guide->identifier().empty() ? guide->className() : guide->identifier());
    }
    auto const* const view = dynamic_cast<UIView*>(&item);
    return view && !view->accessibilityIdentifier().empty() ? view->accessibilityIdentifier()
                                                            : item.className();
}

} // namespace trelundo
