#pragma once

#include "trelundo/kit/controls/PaddingLabel.h"
#include "trelundo/kit/screens/offer/DiscountOfferViewController.h"
#include "trelundo/platform/uikit/layout/UIStackView.h"
#include "trelundo/platform/uikit/views/UIVisualEffectView.h"

namespace trelundo {

/// A limited-time offer of one product as a card over a dark blur of what lies beneath. Present it over the
/// full screen, so that the presenter stays visible through the blur.
class OfferViewController : public DiscountOfferViewController {
public:
    OfferViewController();
    explicit OfferViewController(NSCoder const& /*archive*/)
        : OfferViewController() {}

    void viewDidLoad() override;

protected:
    void showOffer(SKProduct const& product, SKProductDiscount const& discount) override;
    LinksStyle linksStyle() const override;

private:
    void addCard();
    Ref<UIButton> const& continueButton();
    Ref<UIButton> const& declineOfferButton();
    Ref<UIStackView> const& stackView();

    Ref<UIVisualEffectView> visualEffectView_;
    Ref<UIView> offerView_;
    Ref<PaddingLabel> limitedTimeOnlyLabel_;
    Ref<UILabel> offerLabel_;
    Ref<UILabel> infoLabel_;
    Lazy<UIButton> continueButton_{"continueButton"};
    Lazy<UIButton> declineOfferButton_{"declineOfferButton"};
    Lazy<UIStackView> stackView_{"stackView"};
};

} // namespace trelundo
