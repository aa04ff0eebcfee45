#pragma once

#include "trelundo/kit/screens/subscription/PlanPaywallViewController.h"

namespace trelundo {

/// The paywall shown when the free saves are used up, or as an invitation: a picture with a headline block
/// above the plans.
class PremiumV3ViewController : public PlanPaywallViewController {
public:
    PremiumV3ViewController();
    explicit PremiumV3ViewController(NSCoder const& /*archive*/)
        : PremiumV3ViewController() {}

    /// Whether the user has used up the free saves; chooses the headline. To be set before the view loads.
    bool savedOnce() const { return savedOnce_; }
    void setSavedOnce(bool savedOnce) { savedOnce_ = savedOnce; }

    void viewDidLoad() override;

protected:
    /// Not to be replaced: subclasses of this screen buy as it does.
    void purchaseProduct() final { PlanPaywallViewController::purchaseProduct(); }

private:
    void addHeadline();

    Ref<UIImageView> const& backgroundImageView();
    Ref<UIButton> const& unlockButton();
    Ref<UILabel> const& unlock1Label();
    Ref<UILabel> const& unlock2Label();
    Ref<UILabel> const& unlock3Label();
    Ref<UIStackView> const& unlockStackView();

    bool savedOnce_ = false;
    Lazy<UIImageView> backgroundImageView_{"backgroundImageView"};
    Lazy<UIButton> unlockButton_{"unlockButton"};
    Lazy<UILabel> unlock1Label_{"unlock1Label"};
    Ref<UIImageView> logoImageView_;
    Lazy<UILabel> unlock2Label_{"unlock2Label"};
    Lazy<UILabel> unlock3Label_{"unlock3Label"};
    Lazy<UIStackView> unlockStackView_{"unlockStackView"};
};

} // namespace trelundo
