#include "trelundo/kit/controls/PremiumV2Button.h"

#include "trelundo/kit/common/Pictures.h"
#include "trelundo/kit/common/Texts.h"
#include "trelundo/kit/plans/internal/PlanTexts.h"

#include <array>

namespace trelundo {

namespace {

/// What a continue button says first, and what stands below it for other than yearly plans.
enum class ContinueWord { subscribe, continueWord, tryFreeAndSubscribe };
enum class Subtitle { none, renews, cancelAndRenews, cancelAnyTime };

struct ContinueLayout {
    std::string_view abTest;
    ContinueWord word;
    bool showsTrial;
    Subtitle yearly;
    Subtitle other;
};

constexpr std::array continueLayouts{
    ContinueLayout{"V2_A1", ContinueWord::subscribe, false, Subtitle::renews, Subtitle::cancelAndRenews},
    ContinueLayout{"V2_A2", ContinueWord::continueWord, true, Subtitle::renews, Subtitle::cancelAnyTime},
    ContinueLayout{"V2_A3", ContinueWord::continueWord, false, Subtitle::none, Subtitle::cancelAndRenews},
    ContinueLayout{"V2_A4", ContinueWord::tryFreeAndSubscribe, false, Subtitle::none, Subtitle::none},
    ContinueLayout{"V2_B1", ContinueWord::continueWord, true, Subtitle::none, Subtitle::none},
    ContinueLayout{"V2_B2", ContinueWord::continueWord, true, Subtitle::none, Subtitle::none},
    ContinueLayout{"V2_B3", ContinueWord::continueWord, true, Subtitle::none, Subtitle::none},
};

/// Every other tag counts as the first.
ContinueLayout const& continueLayout(std::string_view abTest) {
    for (auto const& layout : continueLayouts)
        if (layout.abTest == abTest) return layout;
    return continueLayouts.front();
}

std::string subtitleText(Subtitle subtitle) {
    switch (subtitle) {
    case Subtitle::renews:
        return Texts::text("Plan automatically renews.");
    case Subtitle::cancelAndRenews:
        return Texts::text("Cancel anytime.") + " " + Texts::text("Plan automatically renews.");
    case Subtitle::cancelAnyTime:
        return Texts::text("You can cancel your subscription at any time.");
    case Subtitle::none:
        break;
    }
    return {};
}

std::string continueWord(ContinueWord word, bool hasTrial) {
    if (word == ContinueWord::continueWord) return Texts::text("Continue");
    auto const subscribe = Texts::text("Subscribe");
    if (word == ContinueWord::subscribe || !hasTrial) return subscribe;
    return Texts::text("Try Free") + " & " + subscribe;
}

} // namespace

PremiumV2Button::PremiumV2Button(CGRect frame)
    : UIButton(frame) {
    setup();
}

PremiumV2Button::PremiumV2Button(NSCoder const& /*archive*/) {}

void PremiumV2Button::setup() {
    layer().setCornerRadius(8);
    layer().setMasksToBounds(true);
    titleLabel()->setNumberOfLines(2);
    setContentHorizontalAlignment(UIControlContentHorizontalAlignment::leading);
    setContentEdgeInsets({0, 16, 0, 16});
    setTitleEdgeInsets({0, 16, 0, 16});
}

void PremiumV2Button::setProducts(Products products) {
    products_ = std::move(products);
    productsDidChange();
}

void PremiumV2Button::setProduct(Ref<SKProduct> product) {
    product_ = std::move(product);
    productDidChange();
}

void PremiumV2Button::setSelected(bool selected) {
    UIButton::setSelected(selected);
    selectionDidChange();
}

PlanTexts PremiumV2Button::texts() const { return {*product_, products_, introductoryPriceWasOffered_}; }

void PremiumV2Button::productsDidChange() {
    if (products_.size() < 2) return;
    auto const templateImage = [](char const* name) -> Ref<UIImage> {
        auto const image = Pictures::image(name);
        return image ? image->withRenderingMode(UIImageRenderingMode::alwaysTemplate) : nullptr;
    };
    using enum UIControlState;
    auto const unchecked = templateImage("unchecked");
    auto const checked = templateImage("checked");
    setImage(unchecked, normal);
    setImage(unchecked, highlighted);
    setImage(checked, selected);
    setImage(checked, selected | highlighted);
}

void PremiumV2Button::selectionDidChange() {
    bool const showsSelection = isSelected() && products_.size() >= 2;
    setBackgroundColor(showsSelection ? selectedColor_ : UIColor::clear());
    if (!isSelected()) return;
    if (auto host = delegate()) host->set(continueTexts());
}

PremiumV2ButtonDelegate::ContinueTexts PremiumV2Button::continueTexts() const {
    TextAttributes first;
    first.set(NSAttributedStringKey::font, UIFont::system(15, UIFont::Weight::bold));
    first.set(NSAttributedStringKey::foregroundColor, buttonTextColor_);
    first.set(NSAttributedStringKey::paragraphStyle,
              {.alignment = NSTextAlignment::center, .lineSpacing = 6});
    auto const second = first.with(NSAttributedStringKey::font, UIFont::system(13, UIFont::Weight::medium));

    auto const& layout = continueLayout(abTest_);
    auto const trial = product_ ? texts().trial("Try %%% for FREE") : std::string{};
    NSAttributedString title{continueWord(layout.word, !trial.empty()), first};
    if (layout.showsTrial && !trial.empty()) title.append("\n" + trial, second);
    bool const isYearly = product_ && texts().isYearly();
    return {std::move(title), subtitleText(isYearly ? layout.yearly : layout.other)};
}

} // namespace trelundo
