#pragma once

#include "trelundo/kit/controls/PremiumV2Button.h"
#include "trelundo/kit/screens/base/BaseViewController.h"
#include "trelundo/platform/uikit/layout/NSLayoutAnchor.h"
#include "trelundo/platform/uikit/layout/UIStackView.h"
#include "trelundo/platform/uikit/views/UIImageView.h"

namespace trelundo {

/// What the second generation of paywalls shares: a palette that reaches every control (the
/// background is the text colour of the continue button too), one plan button per product, the continue button with its subtitle, and a row of two links. A subclass adds the picture above
/// and places the parts. Properties are to be set before the view loads.
class PlanPaywallViewController : public BaseViewController, public PremiumV2ButtonDelegate, public BackgroundColored, public TextColored, public ButtonColored, public TermsColored, public SelectedColored {
public:
    using BaseViewController::BaseViewController;

    /// Of the plan buttons' marks.
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
    /// The screen's background, `picture` over the whole width at the top, and above it the close button with
    /// `restoreLink` in the middle beside it.
    void addHeader(Ref<UIImageView> const& picture, Ref<UIButton> const& restoreLink);
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
