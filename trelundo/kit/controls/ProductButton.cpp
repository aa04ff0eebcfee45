#include "trelundo/kit/controls/ProductButton.h"

#include "trelundo/platform/foundation/Lazy.h"

namespace trelundo {

void ProductButton::setProducts(Products products) {
    products_ = std::move(products);
    productsDidChange();
}

void ProductButton::setProduct(Ref<SKProduct> product) {
    product_ = std::move(product);
    productDidChange();
}

void ProductButton::setSelected(bool selected) {
    UIButton::setSelected(selected);
    selectionDidChange();
}

void ProductButton::addTotalBlock(UIColor separatorColor, NSAttributedString const& amount) {
    totalSeparatorView_ = named("totalSeparatorView", make<UIView>());
    totalSeparatorView_->setBackgroundColor(std::move(separatorColor));
    addSubview(totalSeparatorView_);
    totalLabel_ = named("totalLabel", make<UILabel>());
    totalLabel_->setAttributedText(amount);
    addSubview(totalLabel_);
}

void ProductButton::removeTotalBlock() {
    if (totalSeparatorView_) totalSeparatorView_->removeFromSuperview();
    if (totalLabel_) totalLabel_->removeFromSuperview();
    totalSeparatorView_ = nullptr;
    totalLabel_ = nullptr;
}

} // namespace trelundo
