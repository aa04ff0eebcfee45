#pragma once

#include "trelundo/kit/screens/base/BaseViewController.h"

namespace trelundo {

/// What every offer screen does with its one product: choose the discount that applies, buy with it, and
/// close. Set paymentDiscount before product: the texts are built when the product is assigned.
class DiscountOfferViewController : public BaseViewController {
public:
    using BaseViewController::BaseViewController;

    /// The promotional offer to pay with; null: none. One that the product does not have is still attached to
    /// the payment, and the store decides.
    Ref<SKPaymentDiscount> paymentDiscount() const { return paymentDiscount_; }
    void setPaymentDiscount(Ref<SKPaymentDiscount> discount) { paymentDiscount_ = std::move(discount); }
    /// The offered product. Without a discount that applies, the texts stay as they are.
    Ref<SKProduct> product() const { return product_; }
    void setProduct(Ref<SKProduct> product);

    /// Buys the product with the payment discount; without a product does nothing.
    void purchaseProduct();

protected:
    /// Fills the texts for `product` under the terms of `discount`.
    virtual void showOffer(SKProduct const& product, SKProductDiscount const& discount) = 0;

    /// Font and colour of the links.
    struct LinksStyle {
        UIFont font;
        UIColor color;
    };
    virtual LinksStyle linksStyle() const = 0;
    /// The row of terms, privacy and restore links, for the foot of the screen.
    Ref<UIStackView> const& linksStackView();

private:
    Ref<SKPaymentDiscount> paymentDiscount_;
    Ref<SKProduct> product_;
    Lazy<UIStackView> linksStackView_{"linksStackView"};
};

} // namespace trelundo
