#include "trelundo/kit/common/Texts.h"
#include "trelundo/kit/controls/PremiumButton.h"
#include "trelundo/kit/plans/internal/DiscountTexts.h"
#include "trelundo/kit/plans/internal/PlanTerms.h"
#include "trelundo/kit/plans/internal/PriceTexts.h"
#include "trelundo/platform/foundation/Lazy.h"
#include "trelundo/platform/foundation/Strings.h"

namespace trelundo {

namespace {

constexpr double titleLineSpacing = 4;
constexpr SKProductSubscriptionPeriod oneYear{1, SKProductPeriodUnit::year};

} // namespace

void PremiumButton::productDidChange() {
    if (!product_) return;
    auto const& period = product_->subscriptionPeriod();
    if (!period || period->numberOfUnits == 0) {
        showOneTimePurchase();
        return;
    }
    auto const discount = offer();
    bool const isTrial = isFreeTrial(discount);
    bool const showsMonthlyShare = *period == oneYear && !isTrial;
    auto const firstLine = plan(
        {.productSubscriptionPeriod = *period, .capitalizeFirstLetter = true, .periodUnitDown = isTrial});
    auto const secondLine = showsMonthlyShare ? monthlyShareLine() : PremiumManager::price(*product_);
    if (showsMonthlyShare) addTotalBlock();
    if (discount && !isTrial)
        showIntroductoryPrice(*discount);
    else
        showPlan(firstLine, secondLine);
}

void PremiumButton::showOneTimePurchase() {
    setTitle(filledWithPrice("One-Time Purchase: $$$", PremiumManager::price(*product_)),
             UIControlState::normal);
}

void PremiumButton::showPlan(std::string const& firstLine, std::string const& secondLine) {
    setTitle(firstLine + ": " + secondLine, UIControlState::normal);
    NSAttributedString title{firstLine + "\n", attributes(textBoldFont_)};
    title.append(secondLine, attributes(textFont_));
    setAttributedTitle(title, UIControlState::selected);
    setAttributedTitle(title, UIControlState::selected | UIControlState::highlighted);
}

void PremiumButton::showIntroductoryPrice(SKProductDiscount const& offer) {
    auto const [terms, afterwards] = discountTexts(offer, *product_);
    setAttributedTitle(NSAttributedString{terms + ".\n" + afterwards, attributes(textFont_)},
                       UIControlState::normal);
}

std::string PremiumButton::monthlyShareLine() const {
    auto const share = filledWithPrice("$$$/mo", PremiumManager::price(*product_, 12));
    auto const saving = yearlySaving(*product_, products_);
    if (!saving) return share;
    // Only two of the three signs are replaced: the third stays as the percent sign.
    return share + " · " +
           replacingOccurrences(Texts::text("Save %%% per year"), "%%", std::to_string(*saving));
}

void PremiumButton::addTotalBlock() {
    totalSeparatorView_ = named("totalSeparatorView", make<UIView>());
    totalSeparatorView_->setBackgroundColor(textColor_);
    addSubview(totalSeparatorView_);

    totalLabel_ = named("totalLabel", make<UILabel>());
    totalLabel_->setNumberOfLines(2);
    auto style = attributes(textBoldFont_);
    style.set(NSAttributedStringKey::paragraphStyle,
              {.alignment = NSTextAlignment::center, .lineSpacing = titleLineSpacing});
    totalLabel_->setAttributedText(NSAttributedString{
        filledWithPrice("Total:\n$$$", PremiumManager::price(*product_)), std::move(style)});
    totalLabel_->sizeToFit();
    addSubview(totalLabel_);
}

TextAttributes PremiumButton::attributes(UIFont font) const {
    TextAttributes result;
    result.set(NSAttributedStringKey::font, font);
    result.set(NSAttributedStringKey::foregroundColor, textColor_);
    result.set(NSAttributedStringKey::paragraphStyle, {.lineSpacing = titleLineSpacing});
    return result;
}

} // namespace trelundo
