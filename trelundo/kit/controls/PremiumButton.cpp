#include "trelundo/kit/controls/PremiumButton.h"

#include "trelundo/kit/common/Pictures.h"
#include "trelundo/kit/common/internal/TagTable.h"
#include "trelundo/kit/common/internal/TextAttributes.h"
#include "trelundo/kit/controls/internal/TotalBlock.h"
#include "trelundo/kit/plans/internal/DiscountTexts.h"
#include "trelundo/kit/plans/internal/OfferDiscount.h"
#include "trelundo/kit/plans/internal/Saving.h"
#include "trelundo/kit/plans/internal/TextTemplates.h"
#include "trelundo/kit/store/PremiumManager.h"

#include <array>

namespace trelundo {

namespace {

constexpr auto selectedAndHighlighted = UIControlState::selected | UIControlState::highlighted;

/// What a free trial says below the continue button under one test tag.
struct TrialOffer {
    std::string_view abTest;
    char const* title;
    char const* yearlySubtitle; // null: none
};

constexpr std::array trialOffers{
    TrialOffer{"ziokrefa", "Get %%% FREE!", "with a yearly subscription"},
    TrialOffer{"quivera602", "Try %%% for FREE", nullptr},
    TrialOffer{"", "Get %%% FREE!", "Then $$$/year"},
};

UIColor selectedBackground() { return {0.9294117647058824, 0.9254901960784314, 0.9333333333333333}; }

constexpr double titleLineSpacing = 4;

} // namespace

PremiumButton::PremiumButton(CGRect frame)
    : ProductButton(frame) {
    setup();
}

PremiumButton::PremiumButton(NSCoder const& /*archive*/) {}

void PremiumButton::setup() {
    setupRow({0, 12, 0, 12});
    titleLabel()->setFont(textBoldFont_);
    setTitleColor(textColor_, UIControlState::normal);
    setTitleColor(textColor_.withAlphaComponent(0.3), UIControlState::highlighted);
}

CGSize PremiumButton::intrinsicContentSize() const { return {0, isSmallScreen_ ? 50.0 : 60.0}; }

void PremiumButton::productsDidChange() {
    if (products().size() < 2) return;
    setImage(Pictures::image("not_selected_premium"), UIControlState::normal);
    auto const selected = Pictures::image("selected_premium");
    setImage(selected, UIControlState::selected);
    setImage(selected, selectedAndHighlighted);
}

void PremiumButton::selectionDidChange() {
    setBackgroundColor(isSelected() ? selectedBackground() : UIColor::clear());
    if (totalSeparatorView()) totalSeparatorView()->setHidden(!isSelected());
    if (totalLabel()) totalLabel()->setHidden(!isSelected());
    if (!isSelected()) return;
    if (auto const host = delegate()) tellOffer(*host);
}

void PremiumButton::tellOffer(PremiumButtonDelegate& host) const {
    auto const discount = product() && product()->subscriptionPeriod() ? offer() : nullptr;
    if (!isFreeTrial(discount)) return host.updateOffer(std::nullopt, std::nullopt);
    auto const& texts = rowForTag(trialOffers, abTest());
    std::optional<std::string> subtitle;
    if (texts.yearlySubtitle && product()->subscriptionPeriod()->unit == SKProductPeriodUnit::year)
        subtitle = filledWithPrice(texts.yearlySubtitle, PremiumManager::price(*product()));
    host.updateOffer(filledWithTrial(texts.title, *discount, true), subtitle);
}

Ref<SKProductDiscount> PremiumButton::offer() const {
    return offerDiscount(*product(), paymentDiscount_, introductoryPriceWasOffered());
}

void PremiumButton::placeTotalBlock() {
    TotalBlock{.separator = *totalSeparatorView(),
               .label = *totalLabel(),
               .labelSize = totalLabel()->frame().size,
               .labelMargin = 25,
               .separatorMargin = 50}
        .place(*this);
}

// Titles

void PremiumButton::productDidChange() {
    if (!product()) return;
    auto const& period = product()->subscriptionPeriod();
    if (!period || period->numberOfUnits == 0) return showOneTimePurchase();
    auto const discount = offer();
    bool const isTrial = isFreeTrial(discount);
    bool const showsMonthlyShare = *period == oneYear && !isTrial;
    terms_ = {
        .plan = plan(
            {.productSubscriptionPeriod = *period, .capitalizeFirstLetter = true, .periodUnitDown = isTrial}),
        .price = showsMonthlyShare ? filledWithPrice("$$$/mo", PremiumManager::price(*product(), 12))
                                   : isolatedPrice(PremiumManager::price(*product())),
        .saving = showsMonthlyShare ? savingBesideOthers() : std::string{}};
    if (showsMonthlyShare) addTotal();
    if (discount && !isTrial)
        showIntroductoryPrice(*discount);
    else
        writeTitles();
}

void PremiumButton::showOneTimePurchase() {
    terms_ = {};
    setTitle(filledWithPrice("One-Time Purchase: $$$", PremiumManager::price(*product())),
             UIControlState::normal);
}

void PremiumButton::showIntroductoryPrice(SKProductDiscount const& offer) {
    terms_ = {};
    auto const [terms, afterwards] = discountTexts(offer, *product());
    // Two sentences with three amounts: beside the total block they take as many lines as the row holds.
    titleLabel()->setNumberOfLines(0);
    setAttributedTitle(NSAttributedString{terms + ".\n" + afterwards, attributes(textFont_)},
                       UIControlState::normal);
}

std::string PremiumButton::savingBesideOthers() const {
    auto const saving = yearlySaving(*product(), products(), {sevenDays});
    return saving ? savingText(*saving) : std::string{};
}

void PremiumButton::writeTitles() {
    setTitle(plainTitle(tellsSaving()), UIControlState::normal);
    auto const title = twoLineTitle(tellsSaving());
    setAttributedTitle(title, UIControlState::selected);
    setAttributedTitle(title, selectedAndHighlighted);
}

std::optional<NSAttributedString> PremiumButton::titleWithSaving() const {
    if (terms_.saving.empty()) return std::nullopt;
    return isSelected() ? twoLineTitle(true) : NSAttributedString{plainTitle(true)};
}

std::string PremiumButton::plainTitle(bool withSaving) const {
    return terms_.plan + ": " + terms_.secondLine(withSaving);
}

NSAttributedString PremiumButton::twoLineTitle(bool withSaving) const {
    NSAttributedString title{terms_.plan + "\n", attributes(textBoldFont_)};
    title.append(terms_.secondLine(withSaving), attributes(textFont_));
    return title;
}

std::string PremiumButton::Terms::secondLine(bool withSaving) const {
    return withSaving && !saving.empty() ? price + " · " + saving : price;
}

void PremiumButton::addTotal() {
    NSParagraphStyle const centred{.alignment = NSTextAlignment::center, .lineSpacing = titleLineSpacing};
    addTotalBlock(textColor_,
                  NSAttributedString{filledWithPrice("Total:\n$$$", PremiumManager::price(*product())),
                                     textAttributes(textBoldFont_, textColor_, centred)});
    totalLabel()->setNumberOfLines(2);
    totalLabel()->sizeToFit();
}

TextAttributes PremiumButton::attributes(UIFont font) const {
    return textAttributes(font, textColor_, NSParagraphStyle{.lineSpacing = titleLineSpacing});
}

} // namespace trelundo
