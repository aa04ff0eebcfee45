#pragma once

#include "trelundo/kit/screens/offer/ThemedOfferViewController.h"

namespace trelundo {

/// The dark offer that says it in a sentence: the period, "for just", the price, and below the button the
/// regular yearly price.
class OfferV3ViewController : public ThemedOfferViewController {
public:
    OfferV3ViewController();
    explicit OfferV3ViewController(NSCoder const& /*archive*/)
        : OfferV3ViewController() {}

    UIColor buttonTextColor() const { return buttonTextColor_; }
    void setButtonTextColor(UIColor color) { buttonTextColor_ = std::move(color); }

    void viewDidLoad() override;

protected:
    void showOffer(SKProduct const& product, SKProductDiscount const& discount) override;
    UIColor continueTitleColor() const override { return buttonTextColor_; }
    Ref<UIStackView> makeStack() override;

private:
    UIColor buttonTextColor_ = UIColor::black();
    Lazy<PaddingLabel> limitedTimeOfferLabel_{"limitedTimeOfferLabel"};
    Ref<UILabel> offerLabel_;
    Ref<UILabel> infoLabel_;
};

} // namespace trelundo
