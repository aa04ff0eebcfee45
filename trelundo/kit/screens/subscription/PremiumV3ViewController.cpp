#include "trelundo/kit/screens/subscription/PremiumV3ViewController.h"

#include "trelundo/kit/common/Pictures.h"
#include "trelundo/kit/common/internal/ViewFactory.h"

namespace trelundo {

namespace {

UIColor headlineColor() { return {0.9764705882352941, 0.9411764705882353, 0.9215686274509803}; }

Ref<UIImageView> makeLogo(NSObject& screen) {
    auto logo = makePicture(Pictures::hostImage("logo", screen), UIViewContentMode::scaleAspectFit);
    logo->setClipsToBounds(true);
    activate({logo->widthAnchor() == 138});
    return logo;
}

} // namespace

PremiumV3ViewController::PremiumV3ViewController()
    : logoImageView_(named("logoImageView", makeLogo(*this))) {}

void PremiumV3ViewController::viewDidLoad() {
    PlanPaywallViewController::viewDidLoad();
    addHeader(backgroundImageView(), unlockButton());
    addHeadline();
    addContent(backgroundImageView()->bottomAnchor() - 106);
    addDimmView();
}

void PremiumV3ViewController::addHeadline() {
    view()->addSubview(unlockStackView());
    activate({
        unlockStackView()->leadingAnchor() == backgroundImageView()->leadingAnchor() + 16,
        unlockStackView()->trailingAnchor() == backgroundImageView()->trailingAnchor() - 16,
        unlockStackView()->bottomAnchor() == backgroundImageView()->bottomAnchor() - 130,
    });
}

Ref<UIImageView> const& PremiumV3ViewController::backgroundImageView() {
    return backgroundImageView_([this] {
        auto picture = makeFillingPicture("bg_access", *this);
        picture->setAlpha(isSmallScreen() ? 0.6 : 1.0);
        return picture;
    });
}

Ref<UIButton> const& PremiumV3ViewController::unlockButton() {
    return unlockButton_([this] { return makeRestoreLink(15); });
}

Ref<UILabel> const& PremiumV3ViewController::unlock1Label() {
    return unlock1Label_([] {
        return makeShrinkingLabel("Get access to", UIFont::system(36, UIFont::Weight::semibold),
                                  headlineColor());
    });
}

Ref<UILabel> const& PremiumV3ViewController::unlock2Label() {
    return unlock2Label_([] {
        return makeShrinkingLabel("You’ve run out of free saves", UIFont::system(18, UIFont::Weight::medium),
                                  headlineColor());
    });
}

Ref<UILabel> const& PremiumV3ViewController::unlock3Label() {
    return unlock3Label_([] {
        auto label = makeShrinkingLabel("Enjoy Unlimited Saves!", UIFont::system(36, UIFont::Weight::bold),
                                        headlineColor());
        label->setTextAlignment(NSTextAlignment::center);
        label->setNumberOfLines(2);
        return label;
    });
}

Ref<UIStackView> const& PremiumV3ViewController::unlockStackView() {
    return unlockStackView_([this] {
        auto stack = savedOnce_ ? makeVerticalStack({unlock2Label(), unlock3Label()})
                                : makeVerticalStack({unlock1Label(), logoImageView_});
        stack->setAlignment(UIStackViewAlignment::center);
        if (savedOnce_) stack->setSpacing(12);
        return stack;
    });
}

} // namespace trelundo
