#include "trelundo/kit/controls/PremiumV2CollectionViewCell.h"

#include "trelundo/platform/uikit/layout/NSLayoutAnchor.h"

namespace trelundo {

PremiumV2CollectionViewCell::PremiumV2CollectionViewCell(CGRect frame)
    : FeatureCell(frame) {
    contentView()->addSubview(label());
    activate({
        label()->leadingAnchor() == contentView()->leadingAnchor() + 8,
        label()->trailingAnchor() == contentView()->trailingAnchor() - 8,
        label()->topAnchor() == contentView()->topAnchor() + 8,
    });
}

Ref<UILabel> const& PremiumV2CollectionViewCell::label() {
    return label_([] { return makeLabel(UIFont::system(15, UIFont::Weight::bold)); });
}

} // namespace trelundo
