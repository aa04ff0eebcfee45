#pragma once

#include "trelundo/kit/screens/offer/PercentageOfferViewController.h"

namespace trelundo {

/// The percentage offer with a "Limited Time Offer" badge and a title colour of its own on the button.
class OfferV2ViewController : public PercentageOfferViewController, public ButtonTextColored {
public:
    OfferV2ViewController() = default;
    explicit OfferV2ViewController(NSCoder const& /*archive*/) {}

protected:
    UIColor continueTitleColor() const override { return buttonTextColor(); }
    Ref<UIView> badge() override;

private:
    Lazy<PaddingLabel> limitedTimeOfferLabel_{"limitedTimeOfferLabel"};
};

} // namespace trelundo
