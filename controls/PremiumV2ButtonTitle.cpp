#include "common/Common.h"
#include "controls/PlanTerms.h"
#include "controls/PremiumButton.h"
#include "controls/PremiumV2Button.h"
#include "controls/TotalBlock.h"
#include "platform/foundation/Lazy.h"
#include "platform/foundation/Strings.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <initializer_list>

namespace trelundo {

namespace {

/// What the first line says, and what the second line prefers; the second falls back to what the plan has.
enum class Headline { billedAmount, planName, brand };
enum class Detail { saving, share, startTrial, getTrial, tryTrial, badge };

struct TitleLayout {
    std::string_view abTest;
    Headline headline;
    Detail detail;
    bool hasTotalBlock; // the billed amount at the trailing edge
};

constexpr std::array titleLayouts{
    TitleLayout{"V2_A1", Headline::billedAmount, Detail::saving, false},
    TitleLayout{"V2_A2", Headline::billedAmount, Detail::startTrial, false},
    TitleLayout{"V2_A3", Headline::billedAmount, Detail::share, false},
    TitleLayout{"V2_A4", Headline::billedAmount, Detail::getTrial, false},
    TitleLayout{"V2_B1", Headline::planName, Detail::badge, true},
    TitleLayout{"V2_B2", Headline::billedAmount, Detail::tryTrial, false},
    TitleLayout{"V2_B3", Headline::brand, Detail::share, true},
};

/// Every other tag counts as the first.
TitleLayout const& titleLayout(std::string_view abTest) {
    for (auto const& layout : titleLayouts)
        if (layout.abTest == abTest) return layout;
    return titleLayouts.front();
}

std::string filled(char const* key, std::string const& price) {
    return replacingOccurrences(Common::text(key), "$$$", price);
}

bool isWeekly(SKProductSubscriptionPeriod const& period) {
    return period.is(1, SKProductPeriodUnit::week) || period.is(7, SKProductPeriodUnit::day);
}

bool hasMonthly(Products const& products) {
    return std::ranges::any_of(products, [](Ref<SKProduct> const& product) {
        auto const& period = product->subscriptionPeriod();
        return period && period->is(1, SKProductPeriodUnit::month);
    });
}

TextAttributes lineAttributes(double size, UIFont::Weight weight, UIColor color) {
    TextAttributes attributes;
    attributes.set(NSAttributedStringKey::font, UIFont::system(size, weight));
    attributes.set(NSAttributedStringKey::foregroundColor, std::move(color));
    attributes.set(NSAttributedStringKey::paragraphStyle, {.lineSpacing = 4});
    return attributes;
}

} // namespace

std::string PremiumV2Button::filledWithTrial(char const* key) const {
    auto const offer = product_ && !introductoryPriceWasOffered_ ? product_->introductoryPrice() : nullptr;
    if (!isFreeTrial(offer)) return {};
    return replacingOccurrences(Common::text(key), "%%%",
                                PremiumButton::plan({.productSubscriptionPeriod = offer->subscriptionPeriod(),
                                                     .capitalizeFirstLetter = false,
                                                     .periodUnitDown = true}));
}

std::string PremiumV2Button::shareText() const {
    return hasMonthly(products_) ? filled("$$$/month", PremiumManager::price(*product_, 12))
                                 : filled("$$$/week", PremiumManager::price(*product_, 52));
}

std::string PremiumV2Button::billedAmount() const {
    auto const price = PremiumManager::price(*product_);
    auto const& period = product_->subscriptionPeriod();
    if (!period || period->numberOfUnits == 0) return price;
    if (isYearly()) return filled("$$$/year", price);
    if (period->is(1, SKProductPeriodUnit::month)) return filled("$$$/month", price);
    if (isWeekly(*period)) return filled("$$$/week", price);
    return price;
}

std::string PremiumV2Button::planName() const {
    auto const& period = product_->subscriptionPeriod();
    if (!period || period->numberOfUnits == 0) return product_->localizedTitle();
    if (isYearly()) return localizedCapitalized(Common::text("yearly"));
    if (period->is(1, SKProductPeriodUnit::month)) return localizedCapitalized(Common::text("monthly"));
    if (isWeekly(*period)) return localizedCapitalized(Common::text("weekly"));
    return PremiumButton::plan(
        {.productSubscriptionPeriod = *period, .capitalizeFirstLetter = true, .periodUnitDown = false});
}

std::string PremiumV2Button::savingText() const {
    auto const saving = isYearly() ? yearlySaving(*product_, products_) : std::nullopt;
    if (!saving) return {};
    return replacingOccurrences(Common::text("Save %%% per year"), "%%", std::to_string(*saving));
}

void PremiumV2Button::productDidChange() {
    if (!product_) return;
    auto const share = isYearly() ? shareText() : std::string{};
    auto const& layout = titleLayout(abTest_);

    auto const firstOf = [](std::initializer_list<std::string> texts) {
        auto const found = std::ranges::find_if(texts, [](std::string const& text) { return !text.empty(); });
        return found == texts.end() ? std::string{} : *found;
    };
    auto const name = layout.headline == Headline::planName ? std::string{} : planName();
    auto const detail = [&] {
        switch (layout.detail) {
        case Detail::saving:
            return firstOf({savingText(), share, name});
        case Detail::share:
            return firstOf({share, name});
        case Detail::startTrial:
            return firstOf({filledWithTrial("Start your %%% free trial"), savingText(), share, name});
        case Detail::getTrial:
            return firstOf({filledWithTrial("Get %%% for FREE!"), savingText(), share, name});
        case Detail::tryTrial:
            return firstOf({filledWithTrial("Try %%% Free"), share, name});
        case Detail::badge:
            break;
        }
        return isYearly() ? Common::text("Most Popular") : filledWithTrial("Try %%% Free");
    }();
    auto const headline = layout.headline == Headline::billedAmount ? billedAmount()
                          : layout.headline == Headline::planName   ? planName()
                                                                    : Common::text("Darno Premium");

    using Weight = UIFont::Weight;
    NSAttributedString title{headline, lineAttributes(15, Weight::bold, textColor_)};
    bool const isBadge = layout.detail == Detail::badge && isYearly();
    if (!detail.empty())
        title.append("\n" + detail, isBadge ? lineAttributes(11, Weight::bold, buttonColor_)
                                            : lineAttributes(13, Weight::medium, termsColor_));
    setAttributedTitle(title, UIControlState::normal);
    if (layout.hasTotalBlock) addTotalBlock(billedAmount());
}

void PremiumV2Button::addTotalBlock(std::string const& amount) {
    if (totalSeparatorView_) totalSeparatorView_->removeFromSuperview();
    if (totalLabel_) totalLabel_->removeFromSuperview();
    totalSeparatorView_ = named("totalSeparatorView", make<UIView>());
    totalSeparatorView_->setBackgroundColor(termsColor_);
    addSubview(totalSeparatorView_);
    totalLabel_ = named("totalLabel", make<UILabel>());
    totalLabel_->setAttributedText(
        NSAttributedString{amount, lineAttributes(13, UIFont::Weight::bold, textColor_)});
    addSubview(totalLabel_);
}

void PremiumV2Button::layoutSubviews() {
    UIButton::layoutSubviews();
    if (!totalSeparatorView_ || !totalLabel_) return;
    auto const natural =
        boundingRect(*totalLabel_->attributedText(), {greatestFiniteMagnitude, greatestFiniteMagnitude});
    TotalBlock{.separator = *totalSeparatorView_,
               .label = *totalLabel_,
               .labelSize = {std::ceil(natural.width()), std::ceil(natural.height())},
               .labelMargin = 16,
               .separatorMargin = 32}
        .place(*this);
}

} // namespace trelundo
