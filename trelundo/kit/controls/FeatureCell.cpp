#include "trelundo/kit/controls/FeatureCell.h"

#include "trelundo/platform/foundation/FatalError.h"
#include "trelundo/platform/foundation/Strings.h"

namespace trelundo {

namespace {

void roundCorners(UIView& view) {
    view.layer().setCornerRadius(8);
    view.layer().setMasksToBounds(true);
}

} // namespace

FeatureCell::FeatureCell(CGRect frame)
    : UICollectionViewCell(frame) {
    roundCorners(*imageView_);
    dimmView_->setBackgroundColor(UIColor::black());
    dimmView_->setAlpha(0.4);
    roundCorners(*dimmView_);
    for (Ref<UIView> const& view : {Ref<UIView>{imageView_}, dimmView_}) {
        view->setTranslatesAutoresizingMaskIntoConstraints(false);
        contentView()->addSubview(view);
        activate({
            view->topAnchor() == contentView()->topAnchor(),
            view->leadingAnchor() == contentView()->leadingAnchor(),
            view->trailingAnchor() == contentView()->trailingAnchor(),
            view->bottomAnchor() == contentView()->bottomAnchor(),
        });
    }
}

FeatureCell::FeatureCell(NSCoder const& /*archive*/) { fatalError("init(coder:) has not been implemented"); }

Ref<UILabel> FeatureCell::makeLabel(UIFont font) {
    auto label = named("label", make<UILabel>());
    label->setTranslatesAutoresizingMaskIntoConstraints(false);
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
