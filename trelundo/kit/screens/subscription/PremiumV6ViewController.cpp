#include "trelundo/kit/screens/subscription/PremiumV6ViewController.h"

#include "trelundo/kit/common/Texts.h"
#include "trelundo/kit/common/internal/TextAttributes.h"
#include "trelundo/kit/common/internal/ViewFactory.h"
#include "trelundo/kit/controls/PremiumV2CollectionViewCell.h"
#include "trelundo/kit/plans/internal/OfferDiscount.h"
#include "trelundo/kit/plans/internal/TextTemplates.h"
#include "trelundo/kit/screens/base/internal/ContinueButton.h"
#include "trelundo/kit/screens/base/internal/LinksRow.h"
#include "trelundo/kit/store/PremiumManager.h"
#include "trelundo/platform/uikit/layout/NSLayoutAnchor.h"
#include "trelundo/platform/uikit/layout/UILayoutGuide.h"

namespace trelundo {

namespace {

Ref<UILabel> makeHeadline(char const* key, UIFont::Weight weight) {
    auto label = makeShrinkingLabel(key, UIFont::system(40, weight),
                                    {0.9764705882352941, 0.9411764705882353, 0.9215686274509803});
    label->setTextAlignment(NSTextAlignment::center);
    return label;
}

TextAttributes priceAttributes(double size, UIColor color) {
    return textAttributes(UIFont::system(size, UIFont::Weight::medium), std::move(color));
}

} // namespace

PremiumV6ViewController::PremiumV6ViewController() {
    setBackgroundColor({0.00392156862745098, 0.27058823529411763, 0.34901960784313724});
}

void PremiumV6ViewController::setProduct(Ref<SKProduct> product) {
    product_ = std::move(product);
    productDidChange();
}

void PremiumV6ViewController::productDidChange() {
    auto const offer = product_ ? introductoryOffer(*product_, introductoryPriceWasOffered()) : nullptr;
    if (!offer) return;
    continueButton()->setTitle(filledWithTrial("Try %%% Free", *offer, true), UIControlState::normal);
    auto const price = filledWithPrice("$$$/year", PremiumManager::price(*product_));
    NSAttributedString line{price, priceAttributes(15, UIColor::white())};
    line.append(" ");
    line.append(Texts::text("after trial ends"), priceAttributes(13, UIColor::gray(1, 0.7)));
    subtitleLabel()->setAttributedText(line);
}

void PremiumV6ViewController::purchaseProduct() { purchase(product_); }

void PremiumV6ViewController::viewDidLoad() {
    BaseViewController::viewDidLoad();
    addCover();
    addLinks();
    addContinue();
    addCarousel();
    addHeadline();
    addDimmView();
}

void PremiumV6ViewController::addCover() {
    view()->setBackgroundColor(backgroundColor());
    view()->addSubview(backgroundImageView());
    view()->addSubview(gradientView());
    addCloseButton(closeButton());
    activate({
        backgroundImageView()->topAnchor() == view()->topAnchor(),
        backgroundImageView()->leadingAnchor() == view()->leadingAnchor(),
        backgroundImageView()->trailingAnchor() == view()->trailingAnchor(),
        gradientView()->leadingAnchor() == backgroundImageView()->leadingAnchor(),
        gradientView()->trailingAnchor() == backgroundImageView()->trailingAnchor(),
        gradientView()->bottomAnchor() == backgroundImageView()->bottomAnchor(),
        gradientView()->topAnchor() == backgroundImageView()->bottomAnchor() - 170,
    });
}

void PremiumV6ViewController::addLinks() {
    view()->addSubview(linksStackView());
    activate({
        linksStackView()->leadingAnchor() >= view()->leadingAnchor() + 16,
        linksStackView()->trailingAnchor() <= view()->trailingAnchor() - 16,
        linksStackView()->centerXAnchor() == view()->centerXAnchor(),
        linksStackView()->bottomAnchor() == view()->safeAreaLayoutGuide()->bottomAnchor(),
    });
}

void PremiumV6ViewController::addContinue() {
    view()->addSubview(subtitleLabel());
    pinSides(*subtitleLabel());
    view()->addSubview(continueButton());
    activate({
        subtitleLabel()->bottomAnchor() == linksStackView()->topAnchor() - 16,
        continueButton()->bottomAnchor() == subtitleLabel()->topAnchor() - 16,
    });
    if (traitCollection().horizontalSizeClass == UIUserInterfaceSizeClass::compact) {
        activate({
            continueButton()->leadingAnchor() == view()->leadingAnchor() + 32,
            continueButton()->trailingAnchor() == view()->trailingAnchor() - 32,
        });
    } else {
        activate({
            continueButton()->centerXAnchor() == view()->centerXAnchor(),
            continueButton()->widthAnchor() == 300,
        });
    }
}

void PremiumV6ViewController::addCarousel() {
    view()->addSubview(collectionView());
    activate({
        collectionView()->leadingAnchor() == view()->leadingAnchor(),
        collectionView()->trailingAnchor() == view()->trailingAnchor(),
        collectionView()->bottomAnchor() == continueButton()->topAnchor() - 16,
        collectionView()->topAnchor() == backgroundImageView()->bottomAnchor() - 16,
    });
}

void PremiumV6ViewController::addHeadline() {
    view()->addSubview(unlock2Label());
    pinSides(*unlock2Label());
    view()->addSubview(unlock1Label());
    pinSides(*unlock1Label());
    activate({
        unlock2Label()->bottomAnchor() == collectionView()->topAnchor() - 16,
        unlock1Label()->bottomAnchor() == unlock2Label()->topAnchor(),
    });
}

void PremiumV6ViewController::pinSides(UIView& subview) {
    activate({
        subview.leadingAnchor() == view()->leadingAnchor() + 16,
        subview.trailingAnchor() == view()->trailingAnchor() - 16,
    });
}

Ref<UIImageView> const& PremiumV6ViewController::backgroundImageView() {
    return backgroundImageView_([] { return makeFillingPicture("cover"); });
}

Ref<GradientView> const& PremiumV6ViewController::gradientView() {
    return gradientView_([] {
        auto gradient = usingAutoLayout(make<GradientView>());
        gradient->setStartColor(UIColor::gray(0, 0));
        gradient->setEndColor(UIColor::gray(0, 1));
        return gradient;
    });
}

Ref<UIButton> const& PremiumV6ViewController::closeButton() {
    return closeButton_([this] { return makeCloseButton(*this, UIImage::named("paywall_x"), 20); });
}

Ref<UILabel> const& PremiumV6ViewController::unlock1Label() {
    return unlock1Label_([] { return makeHeadline("Get Access", UIFont::Weight::medium); });
}

Ref<UILabel> const& PremiumV6ViewController::unlock2Label() {
    return unlock2Label_([] { return makeHeadline("To All Features", UIFont::Weight::bold); });
}

Ref<UICollectionView> const& PremiumV6ViewController::collectionView() {
    return collectionView_([this] {
        CGSize const item{160, 130};
        return carousel().makeCollectionView<PremiumV2CollectionViewCell>(
            {.itemSize = item,
             .lineSpacing = 16,
             .interitemSpacing = FeatureCarousel::defaultSpacing,
             .sectionInset = {},
             .height = item.height + 32});
    });
}

Ref<UIButton> const& PremiumV6ViewController::continueButton() {
    return continueButton_([this] {
        auto button =
            makeContinueButton(UIButtonType::custom, UIFont::system(19, UIFont::Weight::bold), buttonColor());
        button->setTitleColor(UIColor::black(), UIControlState::normal);
        button->addTarget(this, &PremiumV6ViewController::purchaseProduct, UIControlEvents::touchUpInside);
        activate({button->heightAnchor() == 64});
        return button;
    });
}

Ref<UILabel> const& PremiumV6ViewController::subtitleLabel() {
    return subtitleLabel_([] {
        auto label = makeLabel(NSTextAlignment::center);
        label->setNumberOfLines(2);
        shrinkToFit(*label);
        return label;
    });
}

Ref<UIStackView> const& PremiumV6ViewController::linksStackView() {
    return linksStackView_([this] { return LinksRow::secondGeneration(termsColor()).make(*this); });
}

} // namespace trelundo
