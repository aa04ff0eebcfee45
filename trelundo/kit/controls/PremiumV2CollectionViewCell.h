#pragma once

#include "trelundo/kit/controls/FeatureCell.h"

namespace trelundo {

/// The feature tile of the second generation: caption at the top.
class PremiumV2CollectionViewCell : public FeatureCell {
public:
    using FeatureCell::FeatureCell;
    explicit PremiumV2CollectionViewCell(CGRect frame = {});

    Ref<UILabel> const& label() override;

private:
    Lazy<UILabel> label_{"label"};
};

} // namespace trelundo
