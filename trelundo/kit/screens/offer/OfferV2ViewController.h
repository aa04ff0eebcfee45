#pragma once

#include "trelundo/kit/screens/offer/PercentageOfferViewController.h"

namespace trelundo {

/// The percentage offer with a "Limited Time Offer" badge and a title colour of its own on the button.
class OfferV2ViewController : public PercentageOfferViewController {
public:
    OfferV2ViewController() = default;
    explicit OfferV2ViewController(NSCoder const& /*archive*/) {}

    UIColor buttonTextColor() const { return buttonTextColor_; }
    void setButtonTextColor(UIColor color) { buttonTextColor_ = std::move(color); }

protected:
    UIColor continueTitleColor() const override { return buttonTextColor_; }
    Ref<UIView> badge() override;

private:
    UIColor buttonTextColor_ = UIColor::black();
    Lazy<PaddingLabel> limitedTimeOfferLabel_{"limitedTimeOfferLabel"};
};

} // namespace trelundo
