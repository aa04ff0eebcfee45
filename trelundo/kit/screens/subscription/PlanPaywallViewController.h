#pragma once

#include "trelundo/kit/controls/PremiumV2Button.h"
#include "trelundo/kit/screens/base/BaseViewController.h"
#include "trelundo/platform/uikit/layout/NSLayoutAnchor.h"
#include "trelundo/platform/uikit/layout/UIStackView.h"
#include "trelundo/platform/uikit/views/UIImageView.h"

namespace trelundo {

/// What the second generation of paywalls shares: a palette that reaches every control, one plan button per
/// product, the continue button with its subtitle, and a row of two links. A subclass adds the picture above
/// and places the parts. Properties are to be set before the view loads.
class PlanPaywallViewController : public BaseViewController, public PremiumV2ButtonDelegate {
public:
    using BaseViewController::BaseViewController;

    /// The screen's background, and the text colour of the continue button.
    UIColor backgroundColor() const { return backgroundColor_; }
    void setBackgroundColor(UIColor color) { backgroundColor_ = std::move(color); }
    UIColor textColor() const { return textColor_; }
    void setTextColor(UIColor color) { textColor_ = std::move(color); }
    UIColor buttonColor() const { return buttonColor_; }
    void setButtonColor(UIColor color) { buttonColor_ = std::move(color); }
    UIColor termsColor() const { return termsColor_; }
    void setTermsColor(UIColor color) { termsColor_ = std::move(color); }
    UIColor selectedColor() const { return selectedColor_; }
    void setSelectedColor(UIColor color) { selectedColor_ = std::move(color); }
    UIColor tintColor() const { return tintColor_; }
    void setTintColor(UIColor color) { tintColor_ = std::move(color); }
    /// One plan button each, in this order.
    Products const& products() const { return products_; }
    void setProducts(Products products) { products_ = std::move(products); }
    /// The plan that starts selected; an index outside the list selects none.
    int selectedProductIndex() const { return selectedProductIndex_; }
    void setSelectedProductIndex(int index) { selectedProductIndex_ = index; }

    void set(ContinueTexts const& texts) override;

protected:
    /// How wide the continue button is: at least `minimum`, else a seven-day trial's text plus `padding`,
    /// points.
    struct ContinueWidth {
        double minimum = 200;
        double padding = 48;
    };
    virtual ContinueWidth continueWidth() const { return {}; }
    /// Called once a plan button is built, and again after a tap has moved the selection.
    virtual void planButtonDidChange(PremiumV2Button& /*button*/) {}
    /// Buys the selected plan; nothing is selected: does nothing.
    virtual void purchaseProduct();

    /// The plan buttons and what follows, from `top` down to the safe area's foot.
    void addContent(NSLayoutYAxisAnchor top);
    /// A picture over the whole width at the top of the screen, cut to its bounds.
    void addTopPicture(Ref<UIImageView> const& picture);
    /// The restore link as underlined white text.
    Ref<UIButton> makeRestoreLink(double fontSize);

    /// The first selected plan button's product; null: none.
    Ref<SKProduct> selectedProduct();
    Ref<UIButton> const& closeButton();
    std::vector<Ref<PremiumV2Button>> const& premiumButtons();
    Ref<UIButton> const& continueButton();
    Ref<UILabel> const& subtitleLabel();
    Ref<UIStackView> const& linksStackView();
    Ref<UIStackView> const& contentStackView();

private:
    Ref<PremiumV2Button> makePlanButton(Ref<SKProduct> const& product, int index);
    void selectProduct(PremiumV2Button& sender);
    void buySelected() { purchaseProduct(); }

    UIColor backgroundColor_ = UIColor::black();
    UIColor textColor_ = UIColor::white();
    UIColor buttonColor_{1, 0.6784313725490196, 0.6392156862745098};
    UIColor termsColor_ = UIColor::gray(1, 0.5);
    UIColor selectedColor_{0.09019607843137255, 0.09019607843137255, 0.09019607843137255};
    UIColor tintColor_ = UIColor::white();
    Products products_;
    int selectedProductIndex_ = 0;
    Lazy<UIButton> closeButton_{"closeButton"};
    LazyList<PremiumV2Button> premiumButtons_{"premiumButtons"};
    Lazy<UIButton> continueButton_{"continueButton"};
    Lazy<UILabel> subtitleLabel_{"subtitleLabel"};
    Lazy<UIStackView> linksStackView_{"linksStackView"};
    Lazy<UIStackView> contentStackView_{"contentStackView"};
};

} // namespace trelundo
