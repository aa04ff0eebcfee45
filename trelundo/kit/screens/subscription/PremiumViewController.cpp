#include "trelundo/kit/screens/subscription/PremiumViewController.h"

#include "trelundo/kit/common/Pictures.h"
#include "trelundo/kit/common/Texts.h"
#include "trelundo/kit/common/internal/TagTable.h"
#include "trelundo/kit/common/internal/TextAttributes.h"
#include "trelundo/kit/common/internal/ViewFactory.h"
#include "trelundo/kit/controls/PremiumCollectionViewCell.h"
#include "trelundo/kit/screens/base/internal/ContinueButton.h"
#include "trelundo/kit/screens/base/internal/LinksRow.h"
#include "trelundo/platform/uikit/layout/NSLayoutAnchor.h"
#include "trelundo/platform/uikit/layout/UILayoutGuide.h"

#include <array>

namespace trelundo {

namespace {

UIColor darkText() { return {0.24313725490196078, 0.2549019607843137, 0.29411764705882354}; }

void setMarginAbove(UIStackView& stack, double points) {
    stack.setLayoutMarginsRelativeArrangement(true);
    stack.setLayoutMargins({points, 0, 0, 0});
}

Ref<UIStackView> makeLogoStack(NSObject& screen) {
    auto logo = make<UIImageView>(Pictures::hostImage("premium_white", screen));
    // The stack gives the logo the title's width, which must not stretch it.
    logo->setContentMode(UIViewContentMode::scaleAspectFit);
    auto const title = makeShrinkingLabel("Unlock All Features", UIFont::system(17, UIFont::Weight::medium),
                                          UIColor::white());
    return makeVerticalStack({logo, title});
}

/// Which text stands in a line of the continue block.
enum class OfferText { continueWord, title, titleOrContinue, subtitle, cancelAnytime, none };

/// How the offer texts are laid out under one test tag.
struct OfferLayout {
    std::string_view abTest;
    OfferText first;
    double firstSize; // points
    OfferText second;
    double secondSize;
    OfferText below;
};

constexpr std::array offerLayouts{
    OfferLayout{"ziokrefa", OfferText::continueWord, 16, OfferText::title, 11, OfferText::subtitle},
    OfferLayout{"quivera602", OfferText::continueWord, 20, OfferText::title, 12, OfferText::cancelAnytime},
    OfferLayout{"", OfferText::titleOrContinue, 16, OfferText::subtitle, 11, OfferText::none},
};
struct OfferTexts {
    std::optional<std::string> title;
    std::optional<std::string> subtitle;

    std::optional<std::string> operator[](OfferText text) const {
        switch (text) {
        case OfferText::continueWord:
            return Texts::text("Continue");
        case OfferText::title:
            return title;
        case OfferText::titleOrContinue:
            return title ? *title : Texts::text("Continue");
        case OfferText::subtitle:
            return subtitle;
        case OfferText::cancelAnytime:
            return Texts::text("You can cancel your subscription at any time.");
        case OfferText::none:
            break;
        }
        return std::nullopt;
    }
};

TextAttributes offerAttributes(double size) {
    return textAttributes(UIFont::system(size, UIFont::Weight::semibold), UIColor::white(),
                          NSParagraphStyle{.alignment = NSTextAlignment::center, .lineSpacing = 4});
}

} // namespace

void PremiumViewController::viewDidLoad() {
    BaseViewController::viewDidLoad();
    addBackground();
    addCloseButton(closeButton());
    addContent();
    addTermsBelowContent();
    addDimmView();
    carousel().scrollToFirstItem();
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
    auto const terms = addTerms(linksStackView());
    activate({terms->topAnchor() >= premiumContentStackView()->bottomAnchor() + 50});
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

void PremiumViewController::selectProduct(PremiumButton& sender) {
    if (sender.isSelected()) purchaseProduct();
    selectOnly(sender);
}

void PremiumViewController::purchaseProduct() {
    auto const selected = selectedButton();
    reportContinue(selected ? selected->product() : nullptr);
    if (selected) purchase(selected->product(), selected->paymentDiscount());
}

PremiumViewController::PremiumViewController()
    : backgroundImageView_(named("backgroundImageView", makeFillingPicture("premium_background", *this)))
    , premiumLogoStackView_(named("premiumLogoStackView", makeLogoStack(*this))) {}

Ref<UIButton> const& PremiumViewController::closeButton() {
    return closeButton_([this] {
        return makeCloseButton(*this, Pictures::image("close_bg", UIImageRenderingMode::alwaysOriginal), 8);
    });
}

Ref<PremiumButton> PremiumViewController::makePremiumButton(Ref<SKProduct> const& product) {
    auto button = usingAutoLayout(make<PremiumButton>());
    button->setSmallScreen(isSmallScreen());
    if (isSmallScreen()) {
        button->setTextFont(UIFont::system(9, UIFont::Weight::semibold));
        button->setTextBoldFont(UIFont::system(11, UIFont::Weight::bold));
        button->titleLabel()->setFont(button->textBoldFont());
    }
    button->setIntroductoryPriceWasOffered(introductoryPriceWasOffered());
    button->setProducts(products());
    auto const discount = paymentDiscounts_.find(product->productIdentifier());
    button->setPaymentDiscount(discount == paymentDiscounts_.end() ? nullptr : discount->second);
    button->setProduct(product);
    button->setABTest(abTest());
    button->setDelegate(this);
    return button;
}

Ref<UIStackView> const& PremiumViewController::premiumButtonsStackView() {
    return premiumButtonsStackView_([this] {
        auto stack = makeVerticalStack({premiumButtons().begin(), premiumButtons().end()});
        stack->setSpacing(6);
        stack->setAlignment(UIStackViewAlignment::center);
        setMarginAbove(*stack, 8);
        return stack;
    });
}

Ref<UIButton> const& PremiumViewController::continueButton() {
    return continueButton_([this] {
        auto button = makeContinueButton(UIButtonType::custom, UIFont::system(15, UIFont::Weight::semibold),
                                         {1, 0.44313725490196076, 0.41568627450980394});
        button->titleLabel()->setNumberOfLines(2);
        button->setTitleColor(UIColor::white(), UIControlState::normal);
        button->setTitleColor(UIColor::gray(1, 0.3), UIControlState::highlighted);
        button->addTarget(this, &PremiumViewController::purchaseProduct, UIControlEvents::touchUpInside);
        auto const trialFont = UIFont::system(16, UIFont::Weight::semibold);
        activate({button->widthAnchor() == continueButtonWidth("Get %%% FREE!", trialFont, 2 * 24)});
        return button;
    });
}

Ref<UILabel> const& PremiumViewController::subtitleLabel() {
    return subtitleLabel_([] {
        auto label = makeLabel(NSTextAlignment::center);
        label->setFont(UIFont::system(11, UIFont::Weight::regular));
        label->setNumberOfLines(2);
        label->setTextColor(UIColor::black());
        label->setText("\n"); // keeps the height of two lines
        return label;
    });
}

Ref<UIStackView> const& PremiumViewController::continueStackView() {
    return continueStackView_([this] {
        auto stack = makeVerticalStack({continueButton(), subtitleLabel()});
        stack->setSpacing(6);
        stack->setAlignment(UIStackViewAlignment::center);
        stack->setDistribution(UIStackViewDistribution::equalSpacing);
        setMarginAbove(*stack, 8);
        return stack;
    });
}

Ref<UIStackView> const& PremiumViewController::linksStackView() {
    return linksStackView_([this] {
        return LinksRow{.font = UIFont::system(isSmallScreen() ? 8 : 10, UIFont::Weight::bold),
                        .color = darkText()}
            .make(*this);
    });
}

Ref<UICollectionView> const& PremiumViewController::collectionView() {
    return collectionView_([this] {
        double const height = isSmallScreen() ? 90 : 110;
        double const gap = isSmallScreen() ? 4 : 16;
        return carousel().makeCollectionView<PremiumCollectionViewCell>({.itemSize = {125, height},
                                                                         .lineSpacing = gap,
                                                                         .interitemSpacing = gap,
                                                                         .sectionInset = {0, gap, 0, gap},
                                                                         .height = height});
    });
}

Ref<UIStackView> const& PremiumViewController::premiumContentStackView() {
    return premiumContentStackView_([this] {
        double const gap = isSmallScreen() ? 4 : 16;
        auto stack = makeVerticalStack({collectionView(), premiumButtonsStackView(), continueStackView()});
        stack->setDistribution(UIStackViewDistribution::equalSpacing);
        stack->setSpacing(gap);
        setMarginAbove(*stack, gap);
        if (!premiumButtons().empty())
            activate({continueButton()->heightAnchor() == premiumButtons().front()->heightAnchor()});
        return stack;
    });
}

void PremiumViewController::updateOffer(std::optional<std::string> const& title,
                                        std::optional<std::string> const& subtitle) {
    OfferTexts const texts{title, subtitle};
    auto const& layout = rowForTag(offerLayouts, abTest());

    NSAttributedString buttonTitle{*texts[layout.first], offerAttributes(layout.firstSize)};
    if (auto const second = texts[layout.second])
        buttonTitle.append("\n" + *second, offerAttributes(layout.secondSize));
    continueButton()->setAttributedTitle(buttonTitle, UIControlState::normal);
    subtitleLabel()->setText(texts[layout.below].value_or("") + "\n");
}

} // namespace trelundo
