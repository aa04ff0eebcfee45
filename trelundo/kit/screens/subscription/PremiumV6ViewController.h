#pragma once

#include "trelundo/kit/controls/GradientView.h"
#include "trelundo/kit/controls/Palette.h"
#include "trelundo/kit/screens/base/BaseViewController.h"
#include "trelundo/kit/screens/base/FeatureCarouselScreen.h"
#include "trelundo/platform/uikit/layout/UIStackView.h"
#include "trelundo/platform/uikit/views/UIImageView.h"

namespace trelundo {

/// The paywall of one product with a trial: a cover that fades into the background, a headline, the drifting
/// strip of features, one large continue button and a price line.
class PremiumV6ViewController : public FeatureCarouselScreen<BaseViewController>,
                                public BackgroundColored,
                                public ButtonColored,
                                public TermsColored {
public:
    PremiumV6ViewController();
    explicit PremiumV6ViewController(NSCoder const& /*archive*/)
        : PremiumV6ViewController() {}

    /// The product on sale, before or after the view loads. One without introductory price changes no text,
    /// nor does one whose introductory price was offered before.
    Ref<SKProduct> product() const { return product_; }
    void setProduct(Ref<SKProduct> product);

    void viewDidLoad() override;

private:
    void productDidChange();
    void purchaseProduct();
    void addCover();
    void addLinks();
    void addContinue();
    void addCarousel();
    void addHeadline();
    /// Between the view's edges with 16 points on either side.
    void pinSides(UIView& subview);

    Ref<UIImageView> const& backgroundImageView();
    Ref<GradientView> const& gradientView();
    Ref<UIButton> const& closeButton();
    Ref<UILabel> const& unlock1Label();
    Ref<UILabel> const& unlock2Label();
    Ref<UICollectionView> const& collectionView();
    Ref<UIButton> const& continueButton();
    Ref<UILabel> const& subtitleLabel();
    Ref<UIStackView> const& linksStackView();

    Ref<SKProduct> product_;
    Lazy<UIImageView> backgroundImageView_{"backgroundImageView"};
    Lazy<GradientView> gradientView_{"gradientView"};
    Lazy<UIButton> closeButton_{"closeButton"};
    Lazy<UILabel> unlock1Label_{"unlock1Label"};
    Lazy<UILabel> unlock2Label_{"unlock2Label"};
    Lazy<UICollectionView> collectionView_{"collectionView"};
    Lazy<UIButton> continueButton_{"continueButton"};
    Lazy<UILabel> subtitleLabel_{"subtitleLabel"};
    Lazy<UIStackView> linksStackView_{"linksStackView"};
};

} // namespace trelundo
