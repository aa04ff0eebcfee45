#pragma once

#include "trelundo/kit/screens/base/BaseViewController.h"
#include "trelundo/kit/store/Products.h"

#include <algorithm>

namespace trelundo {

/// A screen with one button of class Button for each product, at most one of which is selected.
template <std::derived_from<UIButton> Button> class ProductListScreen : public BaseViewController {
public:
    using BaseViewController::BaseViewController;

    /// One button each, in this order.
    Products const& products() const { return products_; }
    void setProducts(Products products) { products_ = std::move(products); }
    /// The product that starts selected; an index outside the list selects none. Not changed by taps.
    int selectedProductIndex() const { return selectedProductIndex_; }
    void setSelectedProductIndex(int index) { selectedProductIndex_ = index; }

protected:
    /// A button for `product`, complete but for its selection and its action.
    virtual Ref<Button> makePremiumButton(Ref<SKProduct> const& product) = 0;
    /// The action of the buttons.
    virtual void selectProduct(Button& sender) = 0;

    std::vector<Ref<Button>> const& premiumButtons() {
        return premiumButtons_([this] {
            std::vector<Ref<Button>> buttons;
            for (auto const& product : products_) {
                auto button = makePremiumButton(product);
                button->setSelected(std::ssize(buttons) == selectedProductIndex_);
                button->addTarget(this, &ProductListScreen::selectProduct, UIControlEvents::touchUpInside);
                buttons.push_back(std::move(button));
            }
            return buttons;
        });
    }

    /// The first selected button; null: none.
    Ref<Button> selectedButton() {
        auto const selected = std::ranges::find_if(premiumButtons(), &Button::isSelected);
        return selected == premiumButtons().end() ? nullptr : *selected;
    }

    void selectOnly(Button const& chosen) {
        for (auto const& button : premiumButtons()) button->setSelected(button.get() == &chosen);
    }

private:
    Products products_;
    int selectedProductIndex_ = 0;
    LazyList<Button> premiumButtons_{"premiumButtons"};
};

} // namespace trelundo
