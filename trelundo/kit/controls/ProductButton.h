#pragma once

#include "trelundo/kit/store/Products.h"
#include "trelundo/platform/foundation/NSAttributedString.h"
#include "trelundo/platform/uikit/controls/UIButton.h"

#include <string>

namespace trelundo {

/// A product as a selectable row among others. Its texts are built when `product` is assigned.
class ProductButton : public UIButton {
public:
    using UIButton::UIButton;

    std::string const& abTest() const { return abTest_; }
    void setABTest(std::string abTest) { abTest_ = std::move(abTest); }
    bool introductoryPriceWasOffered() const { return introductoryPriceWasOffered_; }
    void setIntroductoryPriceWasOffered(bool offered) { introductoryPriceWasOffered_ = offered; }
    /// All products on the screen; with fewer than two the button shows no mark.
    Products const& products() const { return products_; }
    void setProducts(Products products);
    Ref<SKProduct> product() const { return product_; }
    void setProduct(Ref<SKProduct> product);
    /// The total block; null where the title has none.
    Ref<UIView> totalSeparatorView() const { return totalSeparatorView_; }
    Ref<UILabel> totalLabel() const { return totalLabel_; }

    void setSelected(bool selected) override;

protected:
    virtual void productsDidChange() = 0;
    virtual void productDidChange() = 0;
    virtual void selectionDidChange() = 0;

    void addTotalBlock(UIColor separatorColor, NSAttributedString const& amount);
    void removeTotalBlock();

private:
    std::string abTest_;
    bool introductoryPriceWasOffered_ = false;
    Products products_;
    Ref<SKProduct> product_;
    Ref<UIView> totalSeparatorView_;
    Ref<UILabel> totalLabel_;
};

} // namespace trelundo
