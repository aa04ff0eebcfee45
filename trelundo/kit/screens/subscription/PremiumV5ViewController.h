#pragma once

#include "trelundo/kit/screens/subscription/PlanPaywallViewController.h"

namespace trelundo {

/// The "pro" paywall: a dimmed picture behind a title and a checklist, above the plans. A faint border marks
/// the plans that are not selected.
class PremiumV5ViewController : public PlanPaywallViewController {
public:
    PremiumV5ViewController();
    explicit PremiumV5ViewController(NSCoder const& /*archive*/)
        : PremiumV5ViewController() {}

    void viewDidLoad() override;
    /// Hides the last rows of the checklist that have no room below the top bar, until there is room again.
    void viewDidLayoutSubviews() override;

protected:
    ContinueWidth continueWidth() const override { return {.minimum = 264, .padding = 164}; }
    void planButtonDidChange(PremiumV2Button& button) override;

private:
    void addChecklist();
    Ref<UIStackView> makeRow(std::size_t index);
    double roomForChecklist();

    Ref<UIImageView> const& backgroundImageView();
    Ref<UIButton> const& unlockButton();
    Ref<UILabel> const& unlock1Label();
    Ref<UIStackView> const& unlockStackView();

    Lazy<UIImageView> backgroundImageView_{"backgroundImageView"};
    Lazy<UIButton> unlockButton_{"unlockButton"};
    Lazy<UILabel> unlock1Label_{"unlock1Label"};
    Lazy<UIStackView> unlockStackView_{"unlockStackView"};
};

} // namespace trelundo
