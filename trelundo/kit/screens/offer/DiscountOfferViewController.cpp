#include "trelundo/kit/screens/offer/DiscountOfferViewController.h"

#include "trelundo/kit/common/internal/ViewFactory.h"
#include "trelundo/kit/plans/internal/PlanTerms.h"
#include "trelundo/kit/screens/base/internal/LinksRow.h"

namespace trelundo {

void DiscountOfferViewController::setProduct(Ref<SKProduct> product) {
    product_ = std::move(product);
    if (!product_) return;
    if (auto const discount = offerDiscount(*product_, paymentDiscount_, introductoryPriceWasOffered()))
        showOffer(*product_, *discount);
}

void DiscountOfferViewController::purchaseProduct() {
    if (product_) purchasePayment(makePayment(*product_, paymentDiscount_));
}

Ref<UIStackView> const& DiscountOfferViewController::linksStackView() {
    return linksStackView_([this] {
        using enum LinksRow::Link;
        auto const style = linksStyle();
        return LinksRow{
            .links = {userAgreement, privacyPolicy, alreadyPaid}, .font = style.font, .color = style.color}
            .make(*this);
    });
}

Ref<UIStackView> const& DiscountOfferViewController::termsStackView() {
    return termsStackView_([this] {
        auto stack = makeVerticalStack({linksStackView()});
        stack->setAlignment(UIStackViewAlignment::center);
        return stack;
    });
}

} // namespace trelundo
