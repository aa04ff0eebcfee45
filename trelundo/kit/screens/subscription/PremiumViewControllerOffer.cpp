#include "trelundo/kit/common/Texts.h"
#include "trelundo/kit/screens/subscription/PremiumViewController.h"

#include <array>

namespace trelundo {

namespace {

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
static_assert(offerLayouts.back().abTest.empty(), "the last row serves every other tag");

OfferLayout const& offerLayout(std::string_view abTest) {
    for (auto const& layout : offerLayouts)
        if (layout.abTest == abTest) return layout;
    return offerLayouts.back();
}

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
    TextAttributes attributes;
    attributes.set(NSAttributedStringKey::font, UIFont::system(size, UIFont::Weight::semibold));
    attributes.set(NSAttributedStringKey::foregroundColor, UIColor::white());
    attributes.set(NSAttributedStringKey::paragraphStyle,
                   {.alignment = NSTextAlignment::center, .lineSpacing = 4});
    return attributes;
}

} // namespace

void PremiumViewController::updateOffer(std::optional<std::string> const& title,
                                        std::optional<std::string> const& subtitle) {
    OfferTexts const texts{title, subtitle};
    auto const& layout = offerLayout(abTest());

    NSAttributedString buttonTitle{*texts[layout.first], offerAttributes(layout.firstSize)};
    if (auto const second = texts[layout.second])
        buttonTitle.append("\n" + *second, offerAttributes(layout.secondSize));
    continueButton()->setAttributedTitle(buttonTitle, UIControlState::normal);
    subtitleLabel()->setText(texts[layout.below].value_or("") + "\n");
}

} // namespace trelundo
