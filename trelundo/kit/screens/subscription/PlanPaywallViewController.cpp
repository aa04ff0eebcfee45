#include "trelundo/kit/screens/subscription/PlanPaywallViewController.h"

#include "trelundo/kit/common/Pictures.h"
#include "trelundo/kit/common/Texts.h"
#include "trelundo/kit/common/internal/TextAttributes.h"
#include "trelundo/kit/common/internal/ViewFactory.h"
#include "trelundo/kit/screens/base/internal/ContinueButton.h"
#include "trelundo/kit/screens/base/internal/LinksRow.h"
#include "trelundo/platform/uikit/layout/UILayoutGuide.h"

#include <algorithm>

namespace trelundo {

void PlanPaywallViewController::set(ContinueTexts const& texts) {
    continueButton()->setAttributedTitle(texts.continueButtonAttributedTitle, UIControlState::normal);
    subtitleLabel()->setText(texts.subtitleLabelText);
}

// Placing

void PlanPaywallViewController::addHeader(Ref<UIImageView> const& picture, Ref<UIButton> const& restoreLink) {
    view()->setBackgroundColor(backgroundColor());
    view()->addSubview(picture);
    activate({
        picture->topAnchor() == view()->topAnchor(),
        picture->leadingAnchor() == view()->leadingAnchor(),
        picture->trailingAnchor() == view()->trailingAnchor(),
    });
    addCloseButton(closeButton());
    view()->addSubview(restoreLink);
    activate({
        restoreLink->centerXAnchor() == view()->centerXAnchor(),
        restoreLink->centerYAnchor() == closeButton()->centerYAnchor(),
    });
}

void PlanPaywallViewController::addContent(NSLayoutYAxisAnchor top) {
    view()->addSubview(contentStackView());
    auto const safeArea = view()->safeAreaLayoutGuide();
    activate({
        contentStackView()->topAnchor() == top,
        contentStackView()->leadingAnchor() == safeArea->leadingAnchor(),
        contentStackView()->trailingAnchor() == safeArea->trailingAnchor(),
        contentStackView()->bottomAnchor() == safeArea->bottomAnchor(),
    });
    for (auto const& button : premiumButtons())
        activate({(button->widthAnchor() == contentStackView()->widthAnchor() - 32).at(750)});
}

// Buying

void PlanPaywallViewController::selectProduct(PremiumV2Button& sender) {
    if (sender.isSelected() && products().size() >= 2) continueWithPlan();
    selectOnly(sender);
    for (auto const& button : premiumButtons()) planButtonDidChange(*button);
}

Ref<SKProduct> PlanPaywallViewController::selectedProduct() {
    auto const selected = selectedButton();
    return selected ? selected->product() : nullptr;
}

void PlanPaywallViewController::continueWithPlan() {
    reportContinue(selectedProduct());
    purchaseProduct();
}

void PlanPaywallViewController::purchaseProduct() { purchase(selectedProduct()); }

// Views

Ref<UIButton> PlanPaywallViewController::makeRestoreLink(double fontSize) {
    auto button = usingAutoLayout(make<UIButton>(UIButtonType::system));
    auto const attributes = textAttributes(UIFont::system(fontSize, UIFont::Weight::medium), UIColor::white())
                                .with(NSAttributedStringKey::underlineStyle, NSUnderlineStyle::single);
    button->setAttributedTitle(NSAttributedString{Texts::text("Already Paid?"), attributes},
                               UIControlState::normal);
    button->addTarget(this, &PlanPaywallViewController::restorePurchases, UIControlEvents::touchUpInside);
    return button;
}

Ref<UIButton> const& PlanPaywallViewController::closeButton() {
    return closeButton_([this] {
        return makeCloseButton(*this, Pictures::image("x", UIImageRenderingMode::alwaysOriginal), 16);
    });
}

Ref<PremiumV2Button> PlanPaywallViewController::makePremiumButton(Ref<SKProduct> const& product) {
    auto button = usingAutoLayout(make<PremiumV2Button>());
    button->UIView::setTintColor(tintColor_);
    button->setSelectedColor(selectedColor());
    button->setTextColor(textColor());
    button->setButtonTextColor(backgroundColor());
    button->setButtonColor(buttonColor());
    button->setTermsColor(termsColor());
    button->setDelegate(this);
    button->setABTest(abTest());
    button->setIntroductoryPriceWasOffered(introductoryPriceWasOffered());
    button->setProducts(products());
    button->setProduct(product);
    activate({button->widthAnchor() <= 392, button->heightAnchor() == 64});
    return button;
}

Ref<UIButton> const& PlanPaywallViewController::continueButton() {
    return continueButton_([this] {
        auto button =
            makeContinueButton(UIButtonType::custom, UIFont::system(15, UIFont::Weight::bold), buttonColor());
        button->titleLabel()->setNumberOfLines(2);
        button->setContentEdgeInsets({0, 16, 0, 16});
        button->addTarget(this, &PlanPaywallViewController::continueWithPlan, UIControlEvents::touchUpInside);
        auto const [minimum, padding] = continueWidth();
        auto const trialFont = UIFont::system(13, UIFont::Weight::medium);
        double const width = std::max(minimum, continueButtonWidth("Try %%% for FREE", trialFont, padding));
        activate({button->heightAnchor() == 64, button->widthAnchor() == width});
        return button;
    });
}

Ref<UILabel> const& PlanPaywallViewController::subtitleLabel() {
    return subtitleLabel_([this] {
        auto label = makeShrinkingLabel({}, UIFont::system(13, UIFont::Weight::medium), textColor());
        label->setTextAlignment(NSTextAlignment::center);
        label->setNumberOfLines(2);
        return label;
    });
}

Ref<UIStackView> const& PlanPaywallViewController::linksStackView() {
    return linksStackView_([this] {
        auto row = LinksRow::secondGeneration(termsColor());
        row.links = {LinksRow::Link::userAgreement, LinksRow::Link::privacyPolicy};
        return row.make(*this);
    });
}

Ref<UIStackView> const& PlanPaywallViewController::contentStackView() {
    return contentStackView_([this] {
        auto stack = makeVerticalStack({premiumButtons().begin(), premiumButtons().end()});
        stack->addArrangedSubview(continueButton());
        stack->addArrangedSubview(subtitleLabel());
        stack->addArrangedSubview(linksStackView());
        stack->setAlignment(UIStackViewAlignment::center);
        stack->setSpacing(isSmallScreen() ? 8 : 16);
        stack->setLayoutMarginsRelativeArrangement(true);
        stack->setLayoutMargins({0, 16, 0, 16});
        for (auto const& button : premiumButtons()) planButtonDidChange(*button);
        return stack;
    });
}

} // namespace trelundo
