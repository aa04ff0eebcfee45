#include "trelundo/kit/controls/PremiumCollectionViewCell.h"

#include "trelundo/platform/uikit/layout/NSLayoutAnchor.h"

namespace trelundo {

PremiumCollectionViewCell::PremiumCollectionViewCell(CGRect frame)
    : FeatureCell(frame) {
    contentView()->addSubview(label_);
    activate({
        label_->leadingAnchor() == contentView()->leadingAnchor() + 10,
        label_->trailingAnchor() == contentView()->trailingAnchor() - 10,
        label_->bottomAnchor() == contentView()->bottomAnchor() - 8,
    });
}

} // namespace trelundo
