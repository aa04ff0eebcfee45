#include "trelundo/platform/uikit/layout/UILayoutGuide.h"

#include "trelundo/platform/uikit/views/UIView.h"

namespace trelundo {

CGRect UILayoutGuide::layoutFrame() const {
    if (kind_ == Kind::constrained || !owningView_) return layoutFrame_;
    auto const insets =
        kind_ == Kind::safeArea ? owningView_->safeAreaInsets() : owningView_->layoutMargins();
    return CGRect{{}, owningView_->bounds().size}.insetBy(insets);
}

std::string UILayoutGuide::layoutName() const {
    LayoutItem const* const owner = owningView_;
    auto const prefix = owner ? owner->layoutName() + '.' : std::string{};
    return prefix + (identifier_.empty() ? className() : identifier_);
}

} // namespace trelundo
