#include "trelundo/kit/controls/FeatureCell.h"

#include "trelundo/kit/common/internal/ViewConfiguration.h"
#include "trelundo/platform/foundation/FatalError.h"
#include "trelundo/platform/foundation/Strings.h"

namespace trelundo {

FeatureCell::FeatureCell(CGRect frame)
    : UICollectionViewCell(frame) {
    roundCorners(*imageView_);
    dimmView_->setBackgroundColor(UIColor::black());
    dimmView_->setAlpha(0.4);
    roundCorners(*dimmView_);
    for (Ref<UIView> const& view : {Ref<UIView>{imageView_}, dimmView_}) {
        contentView()->addSubview(usingAutoLayout(view));
        pinEdges(*view, *contentView());
    }
}

FeatureCell::FeatureCell(NSCoder const& /*archive*/) { fatalError("init(coder:) has not been implemented"); }

Ref<UILabel> FeatureCell::makeLabel(UIFont font) {
    auto label = named("label", usingAutoLayout(make<UILabel>()));
    label->setFont(font);
    label->setTextColor(UIColor::white());
    label->setAdjustsFontSizeToFitWidth(true);
    label->setMinimumScaleFactor(0.5);
    return label;
}

void FeatureCell::setFeature(std::string const& text, Ref<UIImage> image) {
    label()->setText(text);
    label()->setNumberOfLines(static_cast<int>(split(text, ' ').size()));
    imageView_->setImage(std::move(image));
}

} // namespace trelundo
