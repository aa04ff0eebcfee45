#pragma once

#include "trelundo/kit/controls/PremiumV2ButtonDelegate.h"
#include "trelundo/kit/store/PremiumManager.h"
#include "trelundo/platform/foundation/NSCoder.h"
#include "trelundo/platform/uikit/controls/UIButton.h"

namespace trelundo {

class PlanTexts;

/// One plan as a selectable row in the colours of its screen. Assign in this order: the colours,
/// introductoryPriceWasOffered, abTest, products, product, delegate, selected. Its texts are built when
/// `product` is assigned; when it becomes selected it hands the screen the texts of the continue block.
class PremiumV2Button : public UIButton {
public:
    explicit PremiumV2Button(CGRect frame = {});
    /// A button from an archive gets no corner radius or insets.
    explicit PremiumV2Button(NSCoder const& archive);

    UIColor textColor() const { return textColor_; }
    void setTextColor(UIColor color) { textColor_ = std::move(color); }
    UIColor buttonTextColor() const { return buttonTextColor_; }
    void setButtonTextColor(UIColor color) { buttonTextColor_ = std::move(color); }
    UIColor buttonColor() const { return buttonColor_; }
    void setButtonColor(UIColor color) { buttonColor_ = std::move(color); }
    UIColor termsColor() const { return termsColor_; }
    void setTermsColor(UIColor color) { termsColor_ = std::move(color); }
    UIColor selectedColor() const { return selectedColor_; }
    void setSelectedColor(UIColor color) { selectedColor_ = std::move(color); }
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

    UIColor textColor_{0.9764705882352941, 0.9411764705882353, 0.9176470588235294};
    UIColor buttonTextColor_ = UIColor::black();
    UIColor buttonColor_{1, 0.6784313725490196, 0.6392156862745098};
    UIColor termsColor_ = UIColor::gray(1, 0.5);
    UIColor selectedColor_{0.09019607843137255, 0.09019607843137255, 0.09019607843137255};
    std::string abTest_;
    Weak<PremiumV2ButtonDelegate> delegate_;
    bool introductoryPriceWasOffered_ = false;
    Products products_;
    Ref<SKProduct> product_;
    Ref<UIView> totalSeparatorView_;
    Ref<UILabel> totalLabel_;
};

} // namespace trelundo
