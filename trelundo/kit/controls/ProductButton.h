#pragma once

#include "trelundo/kit/store/Products.h"
#include "trelundo/platform/foundation/NSAttributedString.h"
#include "trelundo/platform/uikit/controls/UIButton.h"

#include <string>

namespace trelundo {

/// A product as a selectable row among others. Its texts are built when `product` is assigned; a saving in
/// them gives way when the row is laid out and has no room for it.
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
    void layoutSubviews() override;

protected:
    /// Rounds the row and lets its title, of two lines, shrink to half its size before any of it is cut.
    void setupRow(UIEdgeInsets insets);
    virtual void productsDidChange() = 0;
    virtual void productDidChange() = 0;
    virtual void selectionDidChange() = 0;
    /// The title of the present state with its saving; none where it tells of no saving. Text without a font
    /// has the title label's.
    virtual std::optional<NSAttributedString> titleWithSaving() const = 0;
    /// Assigns the titles of all states.
    virtual void writeTitles() = 0;
    /// Called for each layout of a row that has a total block.
    virtual void placeTotalBlock() = 0;

    /// Whether the titles tell of the saving.
    bool tellsSaving() const { return tellsSaving_; }
    void addTotalBlock(UIColor separatorColor, NSAttributedString const& amount);
    void removeTotalBlock();

private:
    CGRect titleRoom() const;
    bool hasRoomForSaving(double width);
    void chooseTitles(double width);
    void keepTitleWithin(CGRect room);

    std::string abTest_;
    bool introductoryPriceWasOffered_ = false;
    Products products_;
    Ref<SKProduct> product_;
    Ref<UIView> totalSeparatorView_;
    Ref<UILabel> totalLabel_;
    bool tellsSaving_ = true;
};

} // namespace trelundo
