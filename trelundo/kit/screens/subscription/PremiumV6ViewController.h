#pragma once

#include "trelundo/kit/controls/GradientView.h"
#include "trelundo/kit/screens/base/BaseViewController.h"
#include "trelundo/kit/screens/base/FeatureCarousel.h"
#include "trelundo/platform/uikit/layout/UIStackView.h"
#include "trelundo/platform/uikit/views/UIImageView.h"

namespace trelundo {

/// The paywall of one product with a trial: a cover that fades into the background, a headline, the drifting
/// strip of features, one large continue button and a price line.
class PremiumV6ViewController : public BaseViewController {
public:
    PremiumV6ViewController();
    explicit PremiumV6ViewController(NSCoder const& /*archive*/)
        : PremiumV6ViewController() {}

    UIColor backgroundColor() const { return backgroundColor_; }
    void setBackgroundColor(UIColor color) { backgroundColor_ = std::move(color); }
    UIColor buttonColor() const { return buttonColor_; }
    void setButtonColor(UIColor color) { buttonColor_ = std::move(color); }
    UIColor termsColor() const { return termsColor_; }
    void setTermsColor(UIColor color) { termsColor_ = std::move(color); }
    /// The product on sale, before or after the view loads. One without introductory price changes no text,
    /// nor does one whose introductory price was offered before.
    Ref<SKProduct> product() const { return product_; }
    void setProduct(Ref<SKProduct> product);
    /// The carousel's tiles; at least one.
    std::vector<Feature> const& features() const { return carousel_->features(); }
    void setFeatures(std::vector<Feature> features) { carousel_->setFeatures(std::move(features)); }

    void viewDidLoad() override;
    void viewWillAppear(bool animated) override;
    void viewDidDisappear(bool animated) override;

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

    UIColor backgroundColor_{0.00392156862745098, 0.27058823529411763, 0.34901960784313724};
    UIColor buttonColor_{1, 0.6784313725490196, 0.6392156862745098};
    UIColor termsColor_ = UIColor::gray(1, 0.5);
    Ref<SKProduct> product_;
    Ref<FeatureCarousel> carousel_;
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
