#pragma once

#include "trelundo/kit/controls/PremiumV2Button.h"
#include "trelundo/kit/screens/base/ProductListScreen.h"
#include "trelundo/platform/uikit/layout/NSLayoutAnchor.h"
#include "trelundo/platform/uikit/layout/UIStackView.h"
#include "trelundo/platform/uikit/views/UIImageView.h"

namespace trelundo {

/// What the second generation of paywalls shares: a palette that reaches every control (the
/// background is the text colour of the continue button too), one plan button per product, the continue
/// button with its subtitle, and a row of two links. A subclass adds the picture above and places the parts.
/// Properties are to be set before the view loads.
class PlanPaywallViewController : public ProductListScreen<PremiumV2Button>,
                                  public PremiumV2ButtonDelegate,
                                  public BackgroundColored,
                                  public TextColored,
                                  public ButtonColored,
                                  public TermsColored,
                                  public SelectedColored {
public:
    using ProductListScreen::ProductListScreen;

    /// Of the plan buttons' marks.
    UIColor tintColor() const { return tintColor_; }
    void setTintColor(UIColor color) { tintColor_ = std::move(color); }

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

    /// The selected plan button's product; null: none.
    Ref<SKProduct> selectedProduct();
    Ref<UIButton> const& closeButton();
    Ref<UIButton> const& continueButton();
    Ref<UILabel> const& subtitleLabel();
    Ref<UIStackView> const& linksStackView();
    Ref<UIStackView> const& contentStackView();

private:
    Ref<PremiumV2Button> makePremiumButton(Ref<SKProduct> const& product) override;
    void selectProduct(PremiumV2Button& sender) override;
    void continueWithPlan();

    UIColor tintColor_ = UIColor::white();
    Lazy<UIButton> closeButton_{"closeButton"};
    Lazy<UIButton> continueButton_{"continueButton"};
    Lazy<UILabel> subtitleLabel_{"subtitleLabel"};
    Lazy<UIStackView> linksStackView_{"linksStackView"};
    Lazy<UIStackView> contentStackView_{"contentStackView"};
};

} // namespace trelundo
