#include "trelundo/kit/controls/PremiumV2Button.h"

#include "trelundo/kit/common/Pictures.h"
#include "trelundo/kit/common/Texts.h"
#include "trelundo/kit/common/internal/TagTable.h"
#include "trelundo/kit/common/internal/TextAttributes.h"
#include "trelundo/kit/controls/internal/TotalBlock.h"
#include "trelundo/kit/plans/internal/PlanTexts.h"
#include "trelundo/platform/foundation/Lazy.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace trelundo {

namespace {

UIColor initialTextColor() { return {0.9764705882352941, 0.9411764705882353, 0.9176470588235294}; }

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
    ContinueLayout{"V2_A2", ContinueWord::continueWord, true, Subtitle::renews, Subtitle::cancelAnyTime},
    ContinueLayout{"V2_A3", ContinueWord::continueWord, false, Subtitle::none, Subtitle::cancelAndRenews},
    ContinueLayout{"V2_A4", ContinueWord::tryFreeAndSubscribe, false, Subtitle::none, Subtitle::none},
    ContinueLayout{"V2_B1", ContinueWord::continueWord, true, Subtitle::none, Subtitle::none},
    ContinueLayout{"V2_B2", ContinueWord::continueWord, true, Subtitle::none, Subtitle::none},
    ContinueLayout{"V2_B3", ContinueWord::continueWord, true, Subtitle::none, Subtitle::none},
    ContinueLayout{"V2_A1", ContinueWord::subscribe, false, Subtitle::renews, Subtitle::cancelAndRenews},
};

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

enum class Headline { billedAmount, planName, brand };
enum class Detail { none, saving, share, startTrial, getTrial, tryTrial, badge };

/// One way to write the two lines. The second line says the first of `details` that the plan has, else the
/// plan's name where the headline does not say it.
struct TitleLayout {
    std::string_view abTest;
    Headline headline;
    std::array<Detail, 3> details;
    double detailSize = 13;
    bool hasTotalBlock = false; // the billed amount at the trailing edge
};

constexpr std::array titleLayouts{
    TitleLayout{"V2_A2", Headline::billedAmount, {Detail::startTrial, Detail::saving, Detail::share}},
    TitleLayout{"V2_A3", Headline::billedAmount, {Detail::share, Detail::tryTrial}},
    TitleLayout{"V2_A4", Headline::billedAmount, {Detail::getTrial, Detail::saving, Detail::share}},
    TitleLayout{"V2_B1", Headline::planName, {Detail::badge, Detail::tryTrial}, 11, true},
    TitleLayout{"V2_B2", Headline::billedAmount, {Detail::tryTrial, Detail::share}},
    TitleLayout{"V2_B3", Headline::brand, {}, 13, true},
    TitleLayout{"V2_A1", Headline::billedAmount, {Detail::saving, Detail::getTrial, Detail::share}},
};

std::string headlineText(Headline headline, PlanTexts const& plan) {
    switch (headline) {
    case Headline::billedAmount:
        return plan.billedAmount();
    case Headline::planName:
        return plan.name();
    case Headline::brand:
        break;
    }
    return Texts::text("Darno Premium");
}

std::string detailText(Detail detail, PlanTexts const& plan) {
    switch (detail) {
    case Detail::saving:
        return plan.saving();
    case Detail::share:
        return plan.share();
    case Detail::startTrial:
        return plan.trial("Start your %%% free trial");
    case Detail::getTrial:
        return plan.trial("Get %%% for FREE!");
    case Detail::tryTrial:
        return plan.trial("Try %%% Free");
    case Detail::badge:
        return plan.isYearly() ? Texts::text("Most Popular") : std::string{};
    case Detail::none:
        break;
    }
    return {};
}

/// With room at both ends for the round ends of a badge's ground.
std::string padded(std::string const& text) {
    constexpr char const* noBreakSpaces = "\u00A0\u00A0";
    return noBreakSpaces + text + noBreakSpaces;
}

constexpr double badgePadding = 2; // points above and below its line

bool showsBadge(TitleLayout const& layout, PlanTexts const& plan) {
    return plan.isYearly() && layout.details.front() == Detail::badge;
}

} // namespace

PremiumV2Button::PremiumV2Button(CGRect frame)
    : ProductButton(frame) {
    setTextColor(initialTextColor());
    setup();
}

PremiumV2Button::PremiumV2Button(NSCoder const& /*archive*/) { setTextColor(initialTextColor()); }

void PremiumV2Button::setup() { setupRow({0, 16, 0, 16}); }

PlanTexts PremiumV2Button::texts() const { return {*product(), products(), introductoryPriceWasOffered()}; }

void PremiumV2Button::productsDidChange() {
    if (products().size() < 2) return;
    using enum UIControlState;
    auto const unchecked = Pictures::image("unchecked", UIImageRenderingMode::alwaysTemplate);
    auto const checked = Pictures::image("checked", UIImageRenderingMode::alwaysTemplate);
    setImage(unchecked, normal);
    setImage(unchecked, highlighted);
    setImage(checked, selected);
    setImage(checked, selected | highlighted);
}

void PremiumV2Button::selectionDidChange() {
    bool const showsSelection = isSelected() && products().size() >= 2;
    setBackgroundColor(showsSelection ? selectedColor() : UIColor::clear());
    if (!isSelected()) return;
    if (auto host = delegate()) host->set(continueTexts());
}

PremiumV2ButtonDelegate::ContinueTexts PremiumV2Button::continueTexts() const {
    NSParagraphStyle const centred{.alignment = NSTextAlignment::center, .lineSpacing = 6};
    auto const first = textAttributes(UIFont::system(15, UIFont::Weight::bold), buttonTextColor(), centred);
    auto const second = first.with(NSAttributedStringKey::font, UIFont::system(13, UIFont::Weight::medium));

    auto const& layout = rowForTag(continueLayouts, abTest());
    auto const trial = product() ? texts().trial("Try %%% for FREE") : std::string{};
    NSAttributedString title{continueWord(layout.word, !trial.empty()), first};
    if (layout.showsTrial && !trial.empty()) title.append("\n" + trial, second);
    bool const isYearly = product() && texts().isYearly();
    return {std::move(title), subtitleText(isYearly ? layout.yearly : layout.other)};
}

void PremiumV2Button::productDidChange() {
    if (!product()) return;
    setContentHorizontalAlignment(isCentred() ? UIControlContentHorizontalAlignment::center
                                              : UIControlContentHorizontalAlignment::leading);
    updateBadge();
    fullTitle_ = title(true);
    titleWithoutSaving_ = title(false);
    writeTitles();
    removeTotalBlock();
    if (rowForTag(titleLayouts, abTest()).hasTotalBlock)
        addTotalBlock(
            termsColor(),
            NSAttributedString{texts().price(), lineAttributes(13, UIFont::Weight::bold, textColor())});
}

void PremiumV2Button::writeTitles() {
    setAttributedTitle(tellsSaving() ? fullTitle_ : titleWithoutSaving_, UIControlState::normal);
}

std::optional<NSAttributedString> PremiumV2Button::titleWithSaving() const {
    return fullTitle_ == titleWithoutSaving_ ? std::nullopt : std::optional{fullTitle_};
}

/// A lone plan stands in the middle above the continue button; beside a total block titles begin at the edge.
bool PremiumV2Button::isCentred() const {
    return products().size() < 2 && !rowForTag(titleLayouts, abTest()).hasTotalBlock;
}

TextAttributes PremiumV2Button::lineAttributes(double size, UIFont::Weight weight, UIColor color) const {
    auto const alignment = isCentred() ? NSTextAlignment::center : NSTextAlignment::natural;
    return textAttributes(UIFont::system(size, weight), std::move(color),
                          NSParagraphStyle{.alignment = alignment, .lineSpacing = 4});
}

NSAttributedString PremiumV2Button::title(bool withSaving) const {
    auto const plan = texts();
    auto const& layout = rowForTag(titleLayouts, abTest());
    using Weight = UIFont::Weight;
    NSAttributedString title{headlineText(layout.headline, plan),
                             lineAttributes(15, Weight::bold, textColor())};
    auto const plain = lineAttributes(layout.detailSize, Weight::medium, termsColor());
    auto const isTold = [&](Detail detail) {
        return (withSaving || detail != Detail::saving) && !detailText(detail, plan).empty();
    };
    auto const detail = std::ranges::find_if(layout.details, isTold);
    if (detail == layout.details.end()) {
        auto const name = layout.headline == Headline::planName ? std::string{} : plan.name();
        if (!name.empty()) title.append("\n" + name, plain);
    } else if (*detail == Detail::badge) {
        title.append("\n", plain).append(badge_);
    } else {
        title.append("\n" + detailText(*detail, plan), plain);
    }
    return title;
}

// The badge

void PremiumV2Button::updateBadge() {
    badge_ = {};
    if (badgeGround_) badgeGround_->removeFromSuperview();
    badgeGround_ = nullptr;
    auto const& layout = rowForTag(titleLayouts, abTest());
    if (!showsBadge(layout, texts())) return;
    badge_ = NSAttributedString{padded(detailText(Detail::badge, texts())),
                                lineAttributes(layout.detailSize, UIFont::Weight::bold, buttonTextColor())};
    badgeGround_ = named("badgeGround", make<UIView>());
    badgeGround_->setUserInteractionEnabled(false);
    badgeGround_->setBackgroundColor(buttonColor());
    insertSubview(badgeGround_, 0);
}

void PremiumV2Button::layoutSubviews() {
    ProductButton::layoutSubviews();
    if (badgeGround_) placeBadge();
}

/// Under the last line of the title, which is centred vertically in its label.
void PremiumV2Button::placeBadge() {
    CGSize const unlimited{greatestFiniteMagnitude, greatestFiniteMagnitude};
    auto const frame = titleLabel()->frame();
    double const scale = titleLabel()->fit().scale;
    double const titleHeight = boundingRect(fullTitle_, unlimited).height() * scale;
    auto const line = boundingRect(badge_, unlimited);
    CGSize const size{line.width() * scale, line.height() * scale + 2 * badgePadding};
    double const left = isRightToLeft() ? frame.maxX() - size.width : frame.minX();
    badgeGround_->setFrame({{left, frame.midY() + titleHeight / 2 + badgePadding - size.height}, size});
    badgeGround_->layer().setCornerRadius(size.height / 2);
}

void PremiumV2Button::placeTotalBlock() {
    auto const natural =
        boundingRect(*totalLabel()->attributedText(), {greatestFiniteMagnitude, greatestFiniteMagnitude});
    TotalBlock{.separator = *totalSeparatorView(),
               .label = *totalLabel(),
               .labelSize = {std::ceil(natural.width()), std::ceil(natural.height())},
               .labelMargin = 16,
               .separatorMargin = 32}
        .place(*this);
}

} // namespace trelundo
