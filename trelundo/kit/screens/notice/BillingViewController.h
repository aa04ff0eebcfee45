#pragma once

#include "trelundo/kit/screens/notice/BillingViewControllerDelegate.h"
#include "trelundo/platform/foundation/Lazy.h"
#include "trelundo/platform/foundation/NSCoder.h"
#include "trelundo/platform/uikit/controllers/UIViewController.h"
#include "trelundo/platform/uikit/controls/UIButton.h"
#include "trelundo/platform/uikit/layout/UIStackView.h"
#include "trelundo/platform/uikit/views/UIImageView.h"

#include <optional>
#include <string>
#include <vector>

namespace trelundo {

/// Tells the user that the store could not bill the subscription, and invites to update the payment details.
/// Colours, pictures and texts are to be set before the view loads.
class BillingViewController : public UIViewController {
public:
    BillingViewController();
    explicit BillingViewController(NSCoder const& /*archive*/)
        : BillingViewController() {}

    Ref<BillingViewControllerDelegate> delegate() const { return delegate_.lock(); }
    void setDelegate(Weak<BillingViewControllerDelegate> delegate) { delegate_ = std::move(delegate); }
    UIColor mainBackgroundColor() const { return mainBackgroundColor_; }
    void setMainBackgroundColor(UIColor color) { mainBackgroundColor_ = std::move(color); }
    /// Null: no picture.
    Ref<UIImage> warningBadgeImage() const { return warningBadgeImage_; }
    void setWarningBadgeImage(Ref<UIImage> image) { warningBadgeImage_ = std::move(image); }
    UIColor headlineColor() const { return headlineColor_; }
    void setHeadlineColor(UIColor color) { headlineColor_ = std::move(color); }
    UIColor updateDetailsTextColor() const { return updateDetailsTextColor_; }
    void setUpdateDetailsTextColor(UIColor color) { updateDetailsTextColor_ = std::move(color); }
    UIColor updateDetailsBackgroundColor() const { return updateDetailsBackgroundColor_; }
    void setUpdateDetailsBackgroundColor(UIColor color) { updateDetailsBackgroundColor_ = std::move(color); }
    /// Goes into the paragraph when that is first read.
    std::string const& appName() const { return appName_; }
    void setAppName(std::string name) { appName_ = std::move(name); }
    std::string const& headLineLabelText() const { return headLineLabelText_; }
    void setHeadLineLabelText(std::string text) { headLineLabelText_ = std::move(text); }
    /// Made on first read from appName, then kept.
    std::string const& issueDetailsText();
    void setIssueDetailsText(std::string text) { issueDetailsText_ = std::move(text); }
    std::string const& updateDetailsText() const { return updateDetailsText_; }
    void setUpdateDetailsText(std::string text) { updateDetailsText_ = std::move(text); }
    /// Null: no picture.
    Ref<UIImage> closeBdageImage() const { return closeBdageImage_; }
    void setCloseBdageImage(Ref<UIImage> image) { closeBdageImage_ = std::move(image); }
    /// Whether the main screen was at most 1136 pixels high when the notice was created.
    bool isSmallScreen() const { return isSmallScreen_; }
    void setSmallScreen(bool small) { isSmallScreen_ = small; }

    void viewDidLoad() override;
    void traitCollectionDidChange(UITraitCollection const* previous) override;
    UIStatusBarStyle preferredStatusBarStyle() const override { return UIStatusBarStyle::lightContent; }

    /// Activates the set of the present size class and deactivates the other; an unspecified class changes
    /// nothing.
    void setConstraints();
    /// Dismisses the notice; the delegate is not told.
    void close();
    /// Dismisses the notice and tells the delegate at once, not after the dismissal.
    void updateDetails();

private:
    using Constraints = std::vector<Ref<NSLayoutConstraint>>;

    Constraints makeCompactConstraints();
    Constraints makeRegularConstraints();

    Ref<UIButton> const& closeButton();
    Ref<UIImageView> const& warningBadgeImageView();
    Ref<UIStackView> const& topViewStackView();
    Ref<UILabel> const& headLineLabel();
    Ref<UILabel> const& issueDetailsLabel();
    Ref<UIButton> const& updateDetailsButton();

    Weak<BillingViewControllerDelegate> delegate_;
    UIColor mainBackgroundColor_{60 / 255.0, 0, 189 / 255.0};
    Ref<UIImage> warningBadgeImage_;
    UIColor headlineColor_{250 / 255.0, 148 / 255.0, 176 / 255.0};
    UIColor updateDetailsTextColor_{60 / 255.0, 0, 189 / 255.0};
    UIColor updateDetailsBackgroundColor_{1, 239 / 255.0, 252 / 255.0};
    std::string appName_ = "Quivera";
    std::string headLineLabelText_;
    std::optional<std::string> issueDetailsText_;
    std::string updateDetailsText_;
    Ref<UIImage> closeBdageImage_;
    bool isSmallScreen_;
    Lazy<UIButton> closeButton_{"closeButton"};
    Lazy<UIImageView> warningBadgeImageView_{"warningBadgeImageView"};
    Lazy<UIStackView> topViewStackView_{"topViewStackView"};
    Lazy<UILabel> headLineLabel_{"headLineLabel"};
    Lazy<UILabel> issueDetailsLabel_{"issueDetailsLabel"};
    Lazy<UIButton> updateDetailsButton_{"updateDetailsButton"};
    Constraints compactConstraints_;
    Constraints regularConstraints_;
};

} // namespace trelundo
