#pragma once

#include "trelundo/kit/screens/base/FeatureCarousel.h"
#include "trelundo/kit/screens/subscription/PlanPaywallViewController.h"

namespace trelundo {

/// The second-generation paywall: a cover picture with logo, caption and restore link, a drifting strip of
/// features, the plans and the continue block.
class PremiumV2ViewController : public PlanPaywallViewController {
public:
    PremiumV2ViewController();
    explicit PremiumV2ViewController(NSCoder const& /*archive*/)
        : PremiumV2ViewController() {}

    /// The carousel's tiles; at least one.
    std::vector<Feature> const& features() const { return carousel_->features(); }
    void setFeatures(std::vector<Feature> features) { carousel_->setFeatures(std::move(features)); }

    void viewDidLoad() override;
    void viewWillAppear(bool animated) override;
    void viewDidDisappear(bool animated) override;

private:
    void addCover();
    void addLogo();
    void addCaption();
    void addCarousel();

    Ref<UILabel> const& unlockLabel();
    Ref<UIButton> const& unlockButton();
    Ref<UICollectionView> const& collectionView();

    Ref<FeatureCarousel> carousel_;
    Ref<UIImageView> backgroundImageView_;
    Ref<UIImageView> logoImageView_;
    Lazy<UILabel> unlockLabel_{"unlockLabel"};
    Lazy<UIButton> unlockButton_{"unlockButton"};
    Lazy<UICollectionView> collectionView_{"collectionView"};
};

} // namespace trelundo
