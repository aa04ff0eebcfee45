#pragma once

#include "trelundo/kit/screens/base/FeatureCarouselScreen.h"
#include "trelundo/kit/screens/subscription/PlanPaywallViewController.h"

namespace trelundo {

/// The second-generation paywall: a cover picture with logo, caption and restore link, a drifting strip of
/// features, the plans and the continue block.
class PremiumV2ViewController : public FeatureCarouselScreen<PlanPaywallViewController> {
public:
    PremiumV2ViewController();
    explicit PremiumV2ViewController(NSCoder const& /*archive*/)
        : PremiumV2ViewController() {}

    void viewDidLoad() override;

private:
    void addCover();
    void addLogo();
    void addCaption();
    void addCarousel();

    Ref<UILabel> const& unlockLabel();
    Ref<UIButton> const& unlockButton();
    Ref<UICollectionView> const& collectionView();

    Ref<UIImageView> backgroundImageView_;
    Ref<UIImageView> logoImageView_;
    Lazy<UILabel> unlockLabel_{"unlockLabel"};
    Lazy<UIButton> unlockButton_{"unlockButton"};
    Lazy<UICollectionView> collectionView_{"collectionView"};
};

} // namespace trelundo
