#include "trelundo/kit/screens/offer/OfferV3ViewController.h"

#include "trelundo/kit/common/Texts.h"
#include "trelundo/kit/common/internal/ViewFactory.h"
#include "trelundo/kit/plans/internal/TextTemplates.h"
#include "trelundo/kit/store/PremiumManager.h"
#include "trelundo/platform/uikit/layout/NSLayoutAnchor.h"

namespace trelundo {

OfferV3ViewController::OfferV3ViewController()
    : ThemedOfferViewController({.backgroundImageName = "bg_darno",
                                 .backgroundTopShadowName = "shadow_up",
                                 .backgroundBottomShadowName = "shadow",
                                 .premiumImageName = "d_premium"})
    , offerLabel_(named("offerLabel", makeLabel(NSTextAlignment::natural)))
    , infoLabel_(named("infoLabel", makeLabel(NSTextAlignment::center))) {
    offerLabel_->setNumberOfLines(0); // the sentence stands on three lines of its own
    shrinkToFit(*offerLabel_);
    shrinkToFit(*infoLabel_);
}

void OfferV3ViewController::viewDidLoad() {
    ThemedOfferViewController::viewDidLoad();
    activate({infoLabel_->widthAnchor() == continueButton()->widthAnchor()});
}

void OfferV3ViewController::showOffer(SKProduct const& product, SKProductDiscount const& discount) {
    NSParagraphStyle const paragraph{.alignment = NSTextAlignment::natural, .lineSpacing = 4};
    auto const styled = [&](double smallSize, double size) {
        auto const font = UIFont::system(isSmallScreen() ? smallSize : size, UIFont::Weight::bold);
        return attributes(font).with(NSAttributedStringKey::paragraphStyle, paragraph);
    };
    auto const large = styled(38, 58).with(NSAttributedStringKey::kern, -1);
    auto const& period = discount.subscriptionPeriod();
    NSAttributedString sentence{
        PremiumManager::period({.unit = period.unit, .numberOfPeriods = period.numberOfUnits}), large};
    sentence.append("\n" + Texts::text("for just") + "\n", styled(20, 28));
    sentence.append(isolatedPrice(PremiumManager::price(discount, product)), large);
    offerLabel_->setAttributedText(sentence);

    infoLabel_->setAttributedText(
        NSAttributedString{filledWithPrice("$$$/year after", PremiumManager::price(product)),
                           attributes(UIFont::system(15, UIFont::Weight::regular), 0.4)});
}

Ref<UIStackView> OfferV3ViewController::makeStack() {
    auto const badge = limitedTimeOfferLabel_([this] { return makeBadge(isSmallScreen()); });
    auto info = makeVerticalStack({infoLabel_});
    info->setAlignment(UIStackViewAlignment::center);
    auto stack = makeVerticalStack({badge, offerLabel_, continueButton(), info});
    stack->setAlignment(UIStackViewAlignment::leading);
    stack->setSpacing(20);
    stack->setLayoutMarginsRelativeArrangement(true);
    stack->setLayoutMargins({0, 38, 0, 38});
    // The button's width leaves room for the margins, but for no cutout beside them.
    stack->setInsetsLayoutMarginsFromSafeArea(false);
    return stack;
}

} // namespace trelundo
