#include "trelundo/kit/screens/offer/DiscountOfferViewController.h"

#include "trelundo/kit/plans/internal/OfferDiscount.h"
#include "trelundo/kit/screens/base/internal/LinksRow.h"

namespace trelundo {

void DiscountOfferViewController::setProduct(Ref<SKProduct> product) {
    product_ = std::move(product);
    if (!product_) return;
    if (auto const discount = offerDiscount(*product_, paymentDiscount_, introductoryPriceWasOffered()))
        showOffer(*product_, *discount);
}

void DiscountOfferViewController::purchaseProduct() {
    reportContinue(product_);
    purchase(product_, paymentDiscount_);
}

Ref<UIStackView> const& DiscountOfferViewController::linksStackView() {
    return linksStackView_([this] {
        auto const style = linksStyle();
        return LinksRow{.font = style.font, .color = style.color}.make(*this);
    });
}

} // namespace trelundo
