#include "trelundo/kit/screens/offer/PercentageOfferViewController.h"

#include "trelundo/kit/common/Texts.h"
#include "trelundo/kit/common/internal/ViewFactory.h"
#include "trelundo/kit/plans/internal/TextTemplates.h"
#include "trelundo/kit/store/PremiumManager.h"
#include "trelundo/platform/foundation/FatalError.h"
#include "trelundo/platform/foundation/Locale.h"
#include "trelundo/platform/uikit/layout/NSLayoutAnchor.h"
#include "trelundo/platform/uikit/text/UIFontDescriptor.h"

#include <cstdint>

namespace trelundo {

namespace {

std::optional<UIFont> headlineFont(double size) {
    using enum UIFontDescriptorSymbolicTraits;
    auto const descriptor =
        UIFont::system(size, UIFont::Weight::heavy).fontDescriptor().withSymbolicTraits(bold | italic);
    if (!descriptor) return std::nullopt;
    return UIFont::withDescriptor(*descriptor, size);
}

/// The saving, rounded down to a multiple of five.
std::int64_t percentage(SKProduct const& product, SKProductDiscount const& discount) {
    double const share = discount.price().doubleValue() / product.price().doubleValue();
    return trappingProduct(trappingInteger((1 - share) * 20), 5);
}

std::optional<std::string> firstPreferredLanguage() {
    auto const languages = Locale::preferredLanguages();
    return languages.empty() ? std::nullopt : std::optional{languages.front()};
}

} // namespace

PercentageOfferViewController::PercentageOfferViewController()
    : ThemedOfferViewController({.backgroundImageName = "bg_quivera_iphone_light",
                                 .backgroundTopShadowName = {},
                                 .backgroundBottomShadowName = "shadow_down",
                                 .premiumImageName = "q_premium_light"})
    , preferredLanguage_(firstPreferredLanguage())
    , infoLine1Label_(named("infoLine1Label", makeLabel(NSTextAlignment::center)))
    , infoLine2Label_(named("infoLine2Label", makeLabel(NSTextAlignment::center))) {
    shrinkToFit(*infoLine1Label_);
    shrinkToFit(*infoLine2Label_);
    setBackgroundColor(UIColor::white());
    setTextColor(UIColor::black());
    setButtonColor({173 / 255.0, 158 / 255.0, 1});
}

bool PercentageOfferViewController::isEnglish() const {
    return preferredLanguage_ && preferredLanguage_->find("en") != std::string::npos;
}

void PercentageOfferViewController::showOffer(SKProduct const& product, SKProductDiscount const& discount) {
    auto const font = headlineFont(isEnglish() ? 93 : 35);
    if (!font) return;
    auto const headline = attributes(*font).with(NSAttributedStringKey::kern, 2.4);
    offerLine1Label()->setAttributedText(
        NSAttributedString{std::to_string(percentage(product, discount)) + "%", headline});
    offerLine2Label()->setAttributedText(NSAttributedString{Texts::text("OFF"), headline});

    auto const regular = UIFont::system(15, UIFont::Weight::regular);
    NSAttributedString offerPrice{filledWithPrice("Only $$$", PremiumManager::price(discount, product)),
                                  attributes(UIFont::system(15, UIFont::Weight::semibold))};
    offerPrice.append(" " + Texts::text("for the first year"), attributes(regular));
    infoLine1Label_->setAttributedText(offerPrice);

    auto struck = attributes(regular, 0.4);
    struck.set(NSAttributedStringKey::strikethroughStyle, NSUnderlineStyle::single);
    struck.set(NSAttributedStringKey::strikethroughColor, textColor().withAlphaComponent(0.4));
    infoLine2Label_->setAttributedText(
        NSAttributedString{filledWithPrice("$$$/year", PremiumManager::price(product)), struck});
}

Ref<UIStackView> PercentageOfferViewController::makeStack() {
    auto headlines = makeVerticalStack({offerLine1Label(), offerLine2Label()});
    headlines->setSpacing(16);
    auto infoLines = makeVerticalStack({infoLine1Label_, infoLine2Label_});
    infoLines->setSpacing(8);
    std::vector<Ref<UIView>> arranged{headlines, infoLines, continueButton()};
    if (auto top = badge()) arranged.insert(arranged.begin(), std::move(top));
    auto stack = makeVerticalStack(std::move(arranged));
    stack->setAlignment(UIStackViewAlignment::center);
    stack->setSpacing(32);
    return stack;
}

Ref<UILabel> PercentageOfferViewController::makeHeadline() {
    auto label = makeLabel(NSTextAlignment::center);
    activate({label->heightAnchor() == (isEnglish() ? 70 : 35)});
    return label;
}

Ref<UILabel> const& PercentageOfferViewController::offerLine1Label() {
    return offerLine1Label_([this] { return makeHeadline(); });
}

Ref<UILabel> const& PercentageOfferViewController::offerLine2Label() {
    return offerLine2Label_([this] { return makeHeadline(); });
}

} // namespace trelundo
