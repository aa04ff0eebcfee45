#pragma once

#include "trelundo/kit/controls/Palette.h"
#include "trelundo/kit/controls/PremiumV2ButtonDelegate.h"
#include "trelundo/kit/store/PremiumManager.h"
#include "trelundo/platform/foundation/NSCoder.h"
#include "trelundo/platform/uikit/controls/UIButton.h"

namespace trelundo {

class PlanTexts;

/// One plan as a selectable row in the colours of its screen. Assign in this order: the colours,
/// introductoryPriceWasOffered, abTest, products, product, delegate, selected. Its texts are built when
/// `product` is assigned; when it becomes selected it hands the screen the texts of the continue block.
class PremiumV2Button : public UIButton,
                        public TextColored,
                        public ButtonTextColored,
                        public ButtonColored,
                        public TermsColored,
                        public SelectedColored {
public:
    explicit PremiumV2Button(CGRect frame = {});
    /// A button from an archive gets no corner radius or insets.
    explicit PremiumV2Button(NSCoder const& archive);

    std::string const& abTest() const { return abTest_; }
    void setABTest(std::string abTest) { abTest_ = std::move(abTest); }
    Ref<PremiumV2ButtonDelegate> delegate() const { return delegate_.lock(); }
    void setDelegate(Weak<PremiumV2ButtonDelegate> delegate) { delegate_ = std::move(delegate); }
    bool introductoryPriceWasOffered() const { return introductoryPriceWasOffered_; }
    void setIntroductoryPriceWasOffered(bool offered) { introductoryPriceWasOffered_ = offered; }
    /// All products on the screen; with fewer than two the button shows no mark and no selection.
    Products const& products() const { return products_; }
    void setProducts(Products products);
    Ref<SKProduct> product() const { return product_; }
    void setProduct(Ref<SKProduct> product);
    /// Null where the title has no total block.
    Ref<UIView> totalSeparatorView() const { return totalSeparatorView_; }
    Ref<UILabel> totalLabel() const { return totalLabel_; }

    void setSelected(bool selected) override;
    void layoutSubviews() override;

private:
    void setup();
    void productsDidChange();
    void productDidChange();
    void selectionDidChange();

    PlanTexts texts() const;
    PremiumV2ButtonDelegate::ContinueTexts continueTexts() const;
    void removeTotalBlock();
    void addTotalBlock(std::string const& amount);

    std::string abTest_;
    Weak<PremiumV2ButtonDelegate> delegate_;
    bool introductoryPriceWasOffered_ = false;
    Products products_;
    Ref<SKProduct> product_;
    Ref<UIView> totalSeparatorView_;
    Ref<UILabel> totalLabel_;
};

} // namespace trelundo
