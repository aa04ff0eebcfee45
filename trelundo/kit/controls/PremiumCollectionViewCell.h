#pragma once

#include "trelundo/kit/controls/FeatureCell.h"

namespace trelundo {

/// The feature tile of the first paywall: caption at the bottom.
class PremiumCollectionViewCell : public FeatureCell {
public:
    using FeatureCell::FeatureCell;
    explicit PremiumCollectionViewCell(CGRect frame = {});

    Ref<UILabel> const& label() override { return label_; }

private:
    Ref<UILabel> const label_ = makeLabel(UIFont::system(17, UIFont::Weight::semibold));
};

} // namespace trelundo
