#include "trelundo/kit/screens/subscription/PremiumV2ViewController.h"

#include "trelundo/kit/common/Pictures.h"
#include "trelundo/kit/common/internal/ViewFactory.h"
#include "trelundo/kit/controls/PremiumV2CollectionViewCell.h"

namespace trelundo {

namespace {

Ref<UIImageView> makeLogo(NSObject& screen) {
    auto logo = makePicture(Pictures::hostImage("premium_logo", screen), UIViewContentMode::scaleAspectFit);
    activate({logo->widthAnchor() <= 400});
    if (auto const image = logo->image())
        activate(
            {logo->heightAnchor() == logo->widthAnchor() * (image->size().height / image->size().width)});
    return logo;
}

} // namespace

PremiumV2ViewController::PremiumV2ViewController()
    : backgroundImageView_(named("backgroundImageView", makeFillingPicture("cover", *this)))
    , logoImageView_(named("logoImageView", makeLogo(*this))) {}

void PremiumV2ViewController::viewDidLoad() {
    PlanPaywallViewController::viewDidLoad();
    addCover();
    addCloseButton(closeButton());
    addLogo();
    addCaption();
    addCarousel();
    addContent(collectionView()->bottomAnchor());
    // Last, because what was added last gives way: on a screen too low for all, the cover and not the
    // buttons.
    activate({backgroundImageView_->topAnchor() == view()->topAnchor()});
    view()->bringSubviewToFront(*closeButton()); // the strip may lie over it on a low screen
    addDimmView();
    carousel().scrollToFirstItem();
}

void PremiumV2ViewController::addCover() {
    view()->setBackgroundColor(backgroundColor());
    view()->addSubview(backgroundImageView_);
    activate({
        backgroundImageView_->leadingAnchor() == view()->leadingAnchor(),
        backgroundImageView_->trailingAnchor() == view()->trailingAnchor(),
    });
}

void PremiumV2ViewController::addLogo() {
    view()->addSubview(logoImageView_);
    activate({
        logoImageView_->centerXAnchor() == backgroundImageView_->centerXAnchor(),
        logoImageView_->centerYAnchor() == backgroundImageView_->centerYAnchor(),
        (logoImageView_->widthAnchor() == backgroundImageView_->widthAnchor() - 120).at(999),
    });
}

void PremiumV2ViewController::addCaption() {
    view()->addSubview(unlockLabel());
    view()->addSubview(unlockButton());
    activate({
        unlockLabel()->leadingAnchor() == backgroundImageView_->leadingAnchor() + 16,
        unlockLabel()->bottomAnchor() == backgroundImageView_->bottomAnchor() - 16,
        unlockButton()->trailingAnchor() == backgroundImageView_->trailingAnchor() - 16,
        unlockButton()->leadingAnchor() >= unlockLabel()->trailingAnchor() + 16,
        unlockButton()->centerYAnchor() == unlockLabel()->centerYAnchor(),
    });
}

void PremiumV2ViewController::addCarousel() {
    view()->addSubview(collectionView());
    activate({
        collectionView()->topAnchor() == backgroundImageView_->bottomAnchor(),
        collectionView()->leadingAnchor() == view()->leadingAnchor(),
        collectionView()->trailingAnchor() == view()->trailingAnchor(),
    });
}

Ref<UILabel> const& PremiumV2ViewController::unlockLabel() {
    return unlockLabel_([] {
        return makeShrinkingLabel("Unlock All Features", UIFont::system(13, UIFont::Weight::medium),
                                  UIColor::white());
    });
}

Ref<UIButton> const& PremiumV2ViewController::unlockButton() {
    return unlockButton_([this] { return makeRestoreLink(13); });
}

Ref<UICollectionView> const& PremiumV2ViewController::collectionView() {
    return collectionView_([this] {
        CGSize const item = isSmallScreen() ? CGSize{104, 80} : CGSize{120, 96};
        return carousel().makeCollectionView<PremiumV2CollectionViewCell>(
            {.itemSize = item,
             .lineSpacing = isSmallScreen() ? 8.0 : 16.0,
             .interitemSpacing = FeatureCarousel::defaultSpacing,
             .sectionInset = {},
             .height = item.height + (isSmallScreen() ? 16 : 32)});
    });
}

} // namespace trelundo
