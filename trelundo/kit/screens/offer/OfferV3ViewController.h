#pragma once

#include "trelundo/kit/screens/offer/ThemedOfferViewController.h"

namespace trelundo {

/// The dark offer that says it in a sentence: the period, "for just", the price, and below the button the
/// regular yearly price.
class OfferV3ViewController : public ThemedOfferViewController, public ButtonTextColored {
public:
    OfferV3ViewController();
    explicit OfferV3ViewController(NSCoder const& /*archive*/)
        : OfferV3ViewController() {}

    void viewDidLoad() override;

protected:
    void showOffer(SKProduct const& product, SKProductDiscount const& discount) override;
    UIColor continueTitleColor() const override { return buttonTextColor(); }
    Ref<UIStackView> makeStack() override;

private:
    Lazy<PaddingLabel> limitedTimeOfferLabel_{"limitedTimeOfferLabel"};
    Ref<UILabel> offerLabel_;
    Ref<UILabel> infoLabel_;
    Ref<NSLayoutConstraint> leastHeight_; // of the sentence
};

} // namespace trelundo
