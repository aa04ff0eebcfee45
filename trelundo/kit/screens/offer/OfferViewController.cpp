#include "trelundo/kit/screens/offer/OfferViewController.h"

#include "trelundo/kit/common/Texts.h"
#include "trelundo/kit/common/internal/ViewFactory.h"
#include "trelundo/kit/plans/internal/DiscountTexts.h"
#include "trelundo/platform/coreanimation/CAGradientLayer.h"
#include "trelundo/platform/uikit/layout/NSLayoutAnchor.h"

namespace trelundo {

namespace {

constexpr CGSize cardSize{320, 420};

UIColor accent() { return {83 / 255.0, 0, 1}; }

Ref<UIView> makeCard() {
    auto card = usingAutoLayout(make<UIView>());
    roundCorners(*card, 15);
    auto gradient = make<CAGradientLayer>();
    gradient->setFrame({{}, cardSize});
    gradient->setColors(std::vector<CGColor>{{1, 89 / 255.0, 137 / 255.0}, {1, 108 / 255.0, 125 / 255.0}});
    gradient->setLocations(std::vector<double>{0, 1});
    gradient->setStartPoint({0.5, 1});
    gradient->setEndPoint({0.5, 0});
    card->layer().insertSublayer(gradient, 0);
    return card;
}

Ref<PaddingLabel> makeBadge() {
    auto badge = usingAutoLayout(make<PaddingLabel>());
    badge->setContentInset({10, 15, 10, 15});
    badge->setBackgroundColor(accent());
    badge->setClipsToBounds(true);
    badge->setFont(UIFont::system(16, UIFont::Weight::bold));
    badge->setTextColor(UIColor::white());
    badge->setText(Texts::text("Limited Time Only"));
    return badge;
}

/// A centred label of two lines, empty until the offer is known.
Ref<UILabel> makeOfferLine(UIFont font) {
    auto label = makeShrinkingLabel({}, font, UIColor::white());
    label->setNumberOfLines(2);
    label->setTextAlignment(NSTextAlignment::center);
    return label;
}

Ref<UIStackView> makeInnerStack(std::vector<Ref<UIView>> arranged, double spacing) {
    auto stack = makeVerticalStack(std::move(arranged));
    stack->setSpacing(spacing);
    return stack;
}

Ref<UIButton> makeCardButton(char const* title, UIFont::Weight weight, UIColor color) {
    auto button = usingAutoLayout(make<UIButton>(UIButtonType::system));
    button->titleLabel()->setFont(UIFont::system(16, weight));
    button->setTitleColor(std::move(color), UIControlState::normal);
    button->setTitle(Texts::text(title), UIControlState::normal);
    return button;
}

} // namespace

OfferViewController::OfferViewController()
    : visualEffectView_(named("visualEffectView", usingAutoLayout(make<UIVisualEffectView>(
                                                      UIBlurEffect{UIBlurEffectStyle::dark}))))
    , offerView_(named("offerView", makeCard()))
    , limitedTimeOnlyLabel_(named("limitedTimeOnlyLabel", makeBadge()))
    , offerLabel_(named("offerLabel", makeOfferLine(UIFont::system(40, UIFont::Weight::bold))))
    , infoLabel_(named("infoLabel", makeOfferLine(UIFont::system(16, UIFont::Weight::medium)))) {}

void OfferViewController::viewDidLoad() {
    DiscountOfferViewController::viewDidLoad();
    view()->addSubview(visualEffectView_);
    pinEdges(*visualEffectView_, *view());
    addTerms(linksStackView());
    addCard(); // above the links, which a low screen has beneath the card
    addDimmView();
}

void OfferViewController::addCard() {
    view()->addSubview(offerView_);
    offerView_->addSubview(stackView());
    activate({
        offerView_->widthAnchor() == cardSize.width,
        offerView_->heightAnchor() == cardSize.height,
        offerView_->centerXAnchor() == view()->centerXAnchor(),
        offerView_->centerYAnchor() == view()->centerYAnchor(),
        stackView()->leadingAnchor() == offerView_->leadingAnchor() + 20,
        stackView()->trailingAnchor() == offerView_->trailingAnchor() - 20,
        stackView()->topAnchor() == offerView_->topAnchor() + 20,
        stackView()->bottomAnchor() == offerView_->bottomAnchor() - 20,
    });
    for (auto const& button : {continueButton(), declineOfferButton()})
        activate({button->widthAnchor() == offerView_->widthAnchor() - 50, button->heightAnchor() == 50});
}

DiscountOfferViewController::LinksStyle OfferViewController::linksStyle() const {
    return {UIFont::system(isSmallScreen() ? 8 : 10, UIFont::Weight::bold), UIColor::gray(1, 0.7)};
}

Ref<UIStackView> const& OfferViewController::stackView() {
    return stackView_([this] {
        auto stack = makeVerticalStack({limitedTimeOnlyLabel_, makeInnerStack({offerLabel_, infoLabel_}, 16),
                                        makeInnerStack({continueButton(), declineOfferButton()}, 2)});
        stack->setAlignment(UIStackViewAlignment::center);
        stack->setDistribution(UIStackViewDistribution::equalSpacing);
        return stack;
    });
}

Ref<UIButton> const& OfferViewController::continueButton() {
    return continueButton_([this] {
        auto button = makeCardButton("Continue", UIFont::Weight::semibold, accent());
        button->setBackgroundColor(UIColor::white());
        roundCorners(*button, 10);
        button->addTarget(this, &OfferViewController::purchaseProduct, UIControlEvents::touchUpInside);
        return button;
    });
}

Ref<UIButton> const& OfferViewController::declineOfferButton() {
    return declineOfferButton_([this] {
        auto button = makeCardButton("Decline Offer", UIFont::Weight::medium, UIColor::gray(1, 0.6));
        button->addTarget(this, &OfferViewController::close, UIControlEvents::touchUpInside);
        return button;
    });
}

void OfferViewController::showOffer(SKProduct const& product, SKProductDiscount const& discount) {
    auto const [terms, afterwards] = discountTexts(discount, product);
    offerLabel_->setText(terms);
    infoLabel_->setText(afterwards + ".");
}

} // namespace trelundo
