#include "trelundo/kit/common/Pictures.h"
#include "trelundo/kit/controls/PremiumCollectionViewCell.h"
#include "trelundo/kit/screens/base/internal/ContinueButton.h"
#include "trelundo/kit/screens/base/internal/LinksRow.h"
#include "trelundo/kit/screens/base/internal/ViewBuilding.h"
#include "trelundo/kit/screens/subscription/PremiumViewController.h"
#include "trelundo/platform/uikit/layout/NSLayoutAnchor.h"

namespace trelundo {

namespace {

UIColor darkText() { return {0.24313725490196078, 0.2549019607843137, 0.29411764705882354}; }

void setMarginAbove(UIStackView& stack, double points) {
    stack.setLayoutMarginsRelativeArrangement(true);
    stack.setLayoutMargins({points, 0, 0, 0});
}

Ref<UIStackView> makeLogoStack() {
    auto logo = make<UIImageView>(UIImage::named("premium_white"));
    // The stack gives the logo the title's width, which must not stretch it.
    logo->setContentMode(UIViewContentMode::scaleAspectFit);
    auto const title = makeShrinkingLabel("Unlock All Features", UIFont::system(17, UIFont::Weight::medium),
                                          UIColor::white());
    return makeVerticalStack({logo, title});
}

} // namespace

PremiumViewController::PremiumViewController()
    : carousel_(make<FeatureCarousel>())
    , backgroundImageView_(named("backgroundImageView", makeFillingPicture("premium_background")))
    , premiumLogoStackView_(named("premiumLogoStackView", makeLogoStack())) {}

Ref<UIButton> const& PremiumViewController::closeButton() {
    return closeButton_([this] {
        auto button = makeCloseButton(neverTinted(Pictures::image("close_bg")), 8);
        button->addTarget(this, &PremiumViewController::close, UIControlEvents::touchUpInside);
        return button;
    });
}

std::vector<Ref<PremiumButton>> const& PremiumViewController::premiumButtons() {
    return premiumButtons_([this] {
        std::vector<Ref<PremiumButton>> buttons;
        for (auto const& product : products_)
            buttons.push_back(makePremiumButton(product, static_cast<int>(buttons.size())));
        return buttons;
    });
}

Ref<PremiumButton> PremiumViewController::makePremiumButton(Ref<SKProduct> const& product, int index) {
    auto button = constraintDriven(make<PremiumButton>());
    button->setSmallScreen(isSmallScreen());
    if (isSmallScreen()) {
        button->setTextFont(UIFont::system(9, UIFont::Weight::semibold));
        button->setTextBoldFont(UIFont::system(11, UIFont::Weight::bold));
        button->titleLabel()->setFont(button->textBoldFont());
    }
    button->setIntroductoryPriceWasOffered(introductoryPriceWasOffered());
    button->setProducts(products_);
    auto const discount = paymentDiscounts_.find(product->productIdentifier());
    button->setPaymentDiscount(discount == paymentDiscounts_.end() ? nullptr : discount->second);
    button->setProduct(product);
    button->setABTest(abTest());
    button->setDelegate(this);
    button->setSelected(index == selectedProductIndex_);
    button->addTarget(this, &PremiumViewController::selectProduct, UIControlEvents::touchUpInside);
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
        auto button = constraintDriven(make<UIButton>(UIButtonType::custom));
        button->layer().setCornerRadius(8);
        button->layer().setMasksToBounds(true);
        button->setBackgroundColor(UIColor{1, 0.44313725490196076, 0.41568627450980394});
        button->titleLabel()->setFont(UIFont::system(15, UIFont::Weight::semibold));
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
        auto label = constraintDriven(make<UILabel>());
        label->setFont(UIFont::system(11, UIFont::Weight::regular));
        label->setNumberOfLines(2);
        label->setTextAlignment(NSTextAlignment::center);
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
        using enum LinksRow::Link;
        return LinksRow{.links = {userAgreement, privacyPolicy, alreadyPaid},
                        .font = UIFont::system(isSmallScreen() ? 8 : 10, UIFont::Weight::bold),
                        .color = darkText()}
            .make(*this);
    });
}

Ref<UIStackView> const& PremiumViewController::termsStackView() {
    return termsStackView_([this] {
        auto stack = makeVerticalStack({linksStackView()});
        stack->setAlignment(UIStackViewAlignment::center);
        return stack;
    });
}

Ref<UICollectionView> const& PremiumViewController::collectionView() {
    return collectionView_([this] {
        double const height = isSmallScreen() ? 90 : 110;
        double const gap = isSmallScreen() ? 4 : 16;
        return carousel_->makeCollectionView<PremiumCollectionViewCell>({.itemSize = {125, height},
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

} // namespace trelundo
