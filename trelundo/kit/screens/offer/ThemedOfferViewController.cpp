#include "trelundo/kit/screens/offer/ThemedOfferViewController.h"

#include "trelundo/kit/common/Pictures.h"
#include "trelundo/kit/common/Texts.h"
#include "trelundo/kit/common/internal/TextAttributes.h"
#include "trelundo/kit/common/internal/ViewFactory.h"
#include "trelundo/kit/screens/base/internal/ContinueButton.h"
#include "trelundo/platform/uikit/layout/NSLayoutAnchor.h"

namespace trelundo {

namespace {

Ref<UIImageView> makeShadow(std::string const& pictureName, NSObject& screen) {
    return makePicture(Pictures::hostImage(pictureName, screen), UIViewContentMode::scaleAspectFill);
}

} // namespace

void ThemedOfferViewController::viewDidLoad() {
    DiscountOfferViewController::viewDidLoad();
    addPictures();
    addTopBar();
    addStack(*addTerms(linksStackView()));
    addDimmView();
}

void ThemedOfferViewController::addPictures() {
    view()->setBackgroundColor(backgroundColor());
    for (auto const& picture : {backgroundImageView(), shadowTopImageView(), shadowBottomImageView()}) {
        view()->addSubview(picture);
        activate({
            picture->leadingAnchor() == view()->leadingAnchor(),
            picture->trailingAnchor() == view()->trailingAnchor(),
        });
    }
    activate({
        backgroundImageView()->topAnchor() == view()->topAnchor(),
        backgroundImageView()->bottomAnchor() == view()->bottomAnchor(),
        shadowTopImageView()->topAnchor() == view()->topAnchor(),
        shadowBottomImageView()->bottomAnchor() == view()->bottomAnchor(),
    });
}

void ThemedOfferViewController::addTopBar() {
    addCloseButton(closeButton(), {20, 5});
    view()->addSubview(premiumImageView());
    activate({
        premiumImageView()->centerXAnchor() == view()->centerXAnchor(),
        premiumImageView()->centerYAnchor() == closeButton()->centerYAnchor(),
    });
}

void ThemedOfferViewController::addStack(UIView& terms) {
    view()->addSubview(stackView());
    activate({
        stackView()->leadingAnchor() >= view()->leadingAnchor(),
        view()->trailingAnchor() >= stackView()->trailingAnchor(),
        stackView()->centerXAnchor() == view()->centerXAnchor(),
        stackView()->bottomAnchor() == terms.topAnchor() - 18,
        continueButton()->heightAnchor() == 64,
    });
    bool const isRegular = view()->traitCollection().horizontalSizeClass == UIUserInterfaceSizeClass::regular;
    activate({isRegular ? continueButton()->widthAnchor() == 300
                        : continueButton()->widthAnchor() == view()->widthAnchor() - 76});
    activate({
        (stackView()->topAnchor() >= closeButton()->bottomAnchor()).at(OfferResistance::closeButton),
        (stackView()->topAnchor() >= view()->topAnchor()).at(OfferResistance::top),
    });
}

DiscountOfferViewController::LinksStyle ThemedOfferViewController::linksStyle() const {
    return {UIFont::system(isSmallScreen() ? 8 : 11, UIFont::Weight::medium),
            textColor().withAlphaComponent(0.4)};
}

TextAttributes ThemedOfferViewController::attributes(UIFont font, double alpha) const {
    return textAttributes(font, alpha < 1 ? textColor().withAlphaComponent(alpha) : textColor());
}

Ref<UIImageView> const& ThemedOfferViewController::backgroundImageView() {
    return backgroundImageView_([this] {
        auto picture = makePicture(Pictures::hostImage(pictures_.backgroundImageName, *this),
                                   UIViewContentMode::scaleAspectFill);
        picture->setBackgroundColor(backgroundColor());
        picture->setAlpha(0.9);
        return picture;
    });
}

Ref<UIImageView> const& ThemedOfferViewController::shadowTopImageView() {
    return shadowTopImageView_([this] { return makeShadow(pictures_.backgroundTopShadowName, *this); });
}

Ref<UIImageView> const& ThemedOfferViewController::shadowBottomImageView() {
    return shadowBottomImageView_([this] { return makeShadow(pictures_.backgroundBottomShadowName, *this); });
}

Ref<UIButton> const& ThemedOfferViewController::closeButton() {
    return closeButton_([this] {
        auto button = makeCloseButton(*this, Pictures::image("x"), 16);
        button->setTintColor(textColor());
        return button;
    });
}

Ref<UIImageView> const& ThemedOfferViewController::premiumImageView() {
    return premiumImageView_([this] {
        return usingAutoLayout(make<UIImageView>(Pictures::hostImage(pictures_.premiumImageName, *this)));
    });
}

Ref<UIStackView> const& ThemedOfferViewController::stackView() {
    return stackView_([this] {
        auto stack = makeStack();
        stack->setDistribution(UIStackViewDistribution::equalSpacing);
        return stack;
    });
}

Ref<UIButton> const& ThemedOfferViewController::continueButton() {
    return continueButton_([this] {
        auto button =
            makeContinueButton(UIButtonType::system, UIFont::system(15, UIFont::Weight::bold), buttonColor());
        button->setTitleColor(continueTitleColor(), UIControlState::normal);
        button->setTitle(Texts::text("Continue"), UIControlState::normal);
        button->addTarget(this, &ThemedOfferViewController::purchaseProduct, UIControlEvents::touchUpInside);
        return button;
    });
}

Ref<PaddingLabel> ThemedOfferViewController::makeBadge(bool isSmallScreen) {
    auto badge = usingAutoLayout(make<PaddingLabel>());
    badge->setContentInset({8, 12, 8, 12});
    badge->setBackgroundColor(UIColor::white());
    auto const style =
        textAttributes(UIFont::system(isSmallScreen ? 11 : 15, UIFont::Weight::regular), UIColor::black())
            .with(NSAttributedStringKey::kern, 2.4);
    badge->setAttributedText(NSAttributedString{Texts::text("Limited Time Offer"), style});
    badge->setContentCompressionResistancePriority(OfferResistance::badge, NSLayoutConstraintAxis::vertical);
    badge->layer().setShadowColor({0, 0, 0, 1});
    badge->layer().setShadowOffset({0, 0});
    badge->layer().setShadowRadius(15);
    badge->layer().setShadowOpacity(0.3);
    return badge;
}

} // namespace trelundo
