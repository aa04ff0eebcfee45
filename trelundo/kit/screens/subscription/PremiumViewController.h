#pragma once

#include "trelundo/kit/controls/PremiumButton.h"
#include "trelundo/kit/screens/base/FeatureCarouselScreen.h"
#include "trelundo/kit/screens/base/ProductListScreen.h"
#include "trelundo/platform/uikit/controls/UIButton.h"
#include "trelundo/platform/uikit/layout/UIStackView.h"
#include "trelundo/platform/uikit/views/UIImageView.h"

#include <map>

namespace trelundo {

/// The first paywall: a header picture with logo and title, a drifting strip of features, one button per
/// product, a continue button that buys the selected one, and a row of legal links. A second tap on the
/// selected product buys it too. Properties are to be set before the view loads.
class PremiumViewController : public FeatureCarouselScreen<ProductListScreen<PremiumButton>>,
                              public PremiumButtonDelegate {
public:
    using PaymentDiscounts = std::map<std::string, Ref<SKPaymentDiscount>>;

    PremiumViewController();
    explicit PremiumViewController(NSCoder const& /*archive*/)
        : PremiumViewController() {}

    /// Promotional offers to pay with, by product identifier.
    PaymentDiscounts const& paymentDiscounts() const { return paymentDiscounts_; }
    void setPaymentDiscounts(PaymentDiscounts discounts) { paymentDiscounts_ = std::move(discounts); }

    void updateOffer(std::optional<std::string> const& title,
                     std::optional<std::string> const& subtitle) override;

    void viewDidLoad() override;
    void traitCollectionDidChange(UITraitCollection const* previous) override;

private:
    void addBackground();
    void addContent();
    void addTermsBelowContent();
    void installRegularLayout();
    void installCompactLayout();

    Ref<PremiumButton> makePremiumButton(Ref<SKProduct> const& product) override;
    void selectProduct(PremiumButton& sender) override;
    void purchaseProduct();

    Ref<UIButton> const& closeButton();
    Ref<UIButton> const& continueButton();
    Ref<UIStackView> const& premiumButtonsStackView();
    Ref<UILabel> const& subtitleLabel();
    Ref<UIStackView> const& continueStackView();
    Ref<UIStackView> const& linksStackView();
    Ref<UICollectionView> const& collectionView();
    Ref<UIStackView> const& premiumContentStackView();

    bool isSizeClassLayoutInstalled_ = false;
    PaymentDiscounts paymentDiscounts_;
    Ref<UIImageView> backgroundImageView_;
    Lazy<UIButton> closeButton_{"closeButton"};
    Ref<UIStackView> premiumLogoStackView_;
    Lazy<UIButton> continueButton_{"continueButton"};
    Lazy<UIStackView> premiumButtonsStackView_{"premiumButtonsStackView"};
    Lazy<UILabel> subtitleLabel_{"subtitleLabel"};
    Lazy<UIStackView> continueStackView_{"continueStackView"};
    Lazy<UIStackView> linksStackView_{"linksStackView"};
    Lazy<UICollectionView> collectionView_{"collectionView"};
    Lazy<UIStackView> premiumContentStackView_{"premiumContentStackView"};
};

} // namespace trelundo
