#include "trelundo/kit/controls/PaddingLabel.h"

namespace trelundo {

CGSize PaddingLabel::intrinsicContentSize() const {
    auto const size = UILabel::intrinsicContentSize();
    return {size.width + contentInset_.left + contentInset_.right,
            size.height + contentInset_.top + contentInset_.bottom};
}

void PaddingLabel::drawText(CGRect rect, Canvas& canvas) {
    UILabel::drawText(rect.insetBy(contentInset_), canvas);
}

void PaddingLabel::layoutSubviews() {
    UILabel::layoutSubviews();
    layer().setCornerRadius(bounds().height() * 0.5);
}

} // namespace trelundo
