#include "trelundo/platform/uikit/collection/UICollectionViewCell.h"

namespace trelundo {

UICollectionViewCell::UICollectionViewCell(CGRect frame)
    : UIView(frame)
    , contentView_(make<UIView>(CGRect{{}, frame.size})) {
    addSubview(contentView_);
    // Cells move at every frame of scrolling and seldom change.
    layer().setShouldRasterize(true);
}

// The content follows at once: constraints inside it are solved before any layoutSubviews() runs.
void UICollectionViewCell::place(CGRect frame) {
    if (frame != this->frame()) setFrame(frame);
    CGRect const filled{{}, bounds().size};
    if (contentView_->frame() != filled) contentView_->setFrame(filled);
}

void UICollectionViewCell::layoutSubviews() {
    UIView::layoutSubviews();
    place(frame());
}

} // namespace trelundo
