#include "trelundo/kit/screens/subscription/PremiumViewController.h"

#include "trelundo/platform/uikit/layout/NSLayoutAnchor.h"
#include "trelundo/platform/uikit/layout/UILayoutGuide.h"

#include <algorithm>

namespace trelundo {

void PremiumViewController::viewDidLoad() {
    BaseViewController::viewDidLoad();
    addBackground();
    addCloseButton(closeButton());
    addContent();
    addTermsBelowContent();
    addDimmView();
    carousel_->scrollToFirstItem();
}

void PremiumViewController::addBackground() {
    view()->setBackgroundColor(UIColor{0.9647058823529412, 0.9647058823529412, 0.9647058823529412});
    view()->addSubview(backgroundImageView_);
    activate({
        backgroundImageView_->leadingAnchor() == view()->leadingAnchor(),
        backgroundImageView_->trailingAnchor() == view()->trailingAnchor(),
        backgroundImageView_->topAnchor() == view()->topAnchor(),
        backgroundImageView_->heightAnchor() >= 110,
        backgroundImageView_->heightAnchor() <= view()->heightAnchor() * 0.5,
    });
}

void PremiumViewController::addContent() {
    view()->addSubview(premiumLogoStackView_);
    view()->addSubview(premiumContentStackView());
    auto const safeArea = view()->safeAreaLayoutGuide();
    activate({
        premiumContentStackView()->leadingAnchor() == safeArea->leadingAnchor(),
        premiumContentStackView()->trailingAnchor() == safeArea->trailingAnchor(),
        premiumContentStackView()->topAnchor() == backgroundImageView_->bottomAnchor(),
    });
}

void PremiumViewController::addTermsBelowContent() {
    addTerms(termsStackView());
    activate({termsStackView()->topAnchor() >= premiumContentStackView()->bottomAnchor() + 50});
}

void PremiumViewController::traitCollectionDidChange(UITraitCollection const* previous) {
    BaseViewController::traitCollectionDidChange(previous);
    if (isSizeClassLayoutInstalled_) return;
    isSizeClassLayoutInstalled_ = true;
    if (traitCollection().horizontalSizeClass == UIUserInterfaceSizeClass::regular)
        installRegularLayout();
    else
        installCompactLayout();
}

void PremiumViewController::installRegularLayout() {
    activate({
        premiumLogoStackView_->leadingAnchor() == view()->leadingAnchor() + 40,
        premiumLogoStackView_->bottomAnchor() == backgroundImageView_->bottomAnchor() - 40,
    });
    for (auto const& button : premiumButtons()) activate({button->widthAnchor() == 400});
}

void PremiumViewController::installCompactLayout() {
    activate({
        premiumLogoStackView_->widthAnchor() <= view()->widthAnchor() - 40,
        premiumLogoStackView_->centerXAnchor() == view()->centerXAnchor(),
        premiumLogoStackView_->bottomAnchor() ==
            backgroundImageView_->bottomAnchor() - (isSmallScreen() ? 10 : 20),
    });
    for (auto const& button : premiumButtons())
        activate({button->widthAnchor() == premiumButtonsStackView()->widthAnchor() - 30});
}

void PremiumViewController::viewWillAppear(bool animated) {
    BaseViewController::viewWillAppear(animated);
    carousel_->start();
}

void PremiumViewController::viewDidDisappear(bool animated) {
    BaseViewController::viewDidDisappear(animated);
    carousel_->stop();
}

void PremiumViewController::selectProduct(PremiumButton& sender) {
    if (sender.isSelected()) purchaseProduct();
    for (auto const& button : premiumButtons()) button->setSelected(button.get() == &sender);
}

void PremiumViewController::purchaseProduct() {
    auto const selected = std::ranges::find_if(premiumButtons(), &PremiumButton::isSelected);
    if (selected == premiumButtons().end() || !(*selected)->product()) return;
    purchasePayment(makePayment(*(*selected)->product(), (*selected)->paymentDiscount()));
}

} // namespace trelundo
