#include "trelundo/kit/common/internal/ViewConfiguration.h"

#include "trelundo/platform/uikit/layout/NSLayoutAnchor.h"

namespace trelundo {

void shrinkToFit(UILabel& label) {
    label.setAdjustsFontSizeToFitWidth(true);
    label.setMinimumScaleFactor(0.5);
    label.setLineBreakMode(NSLineBreakMode::byTruncatingTail);
}

void roundCorners(UIView& view, double radius) {
    view.layer().setCornerRadius(radius);
    view.layer().setMasksToBounds(true);
}

void pinEdges(UIView& view, UIView& container) {
    activate({
        view.topAnchor() == container.topAnchor(),
        view.leadingAnchor() == container.leadingAnchor(),
        view.trailingAnchor() == container.trailingAnchor(),
        view.bottomAnchor() == container.bottomAnchor(),
    });
}

} // namespace trelundo
