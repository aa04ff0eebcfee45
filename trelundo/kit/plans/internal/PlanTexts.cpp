#include "trelundo/kit/plans/internal/PlanTexts.h"

#include "trelundo/kit/common/Texts.h"
#include "trelundo/kit/plans/PlanName.h"
#include "trelundo/kit/plans/internal/PlanTerms.h"
#include "trelundo/kit/plans/internal/PriceTexts.h"
#include "trelundo/kit/store/PremiumManager.h"
#include "trelundo/platform/foundation/Strings.h"

namespace trelundo {

namespace {

using Period = SKProductSubscriptionPeriod;
constexpr Period oneMonth{1, SKProductPeriodUnit::month};
constexpr Period oneWeek{1, SKProductPeriodUnit::week};
constexpr Period sevenDays{7, SKProductPeriodUnit::day};

/// The words for one of the three usual periods.
struct UsualPeriod {
    char const* priceKey;
    char const* adjective;
};

std::optional<UsualPeriod> usual(std::optional<Period> const& period) {
    if (!period) return std::nullopt;
    if (period->is(1, SKProductPeriodUnit::year)) return UsualPeriod{"$$$/year", "yearly"};
    if (*period == oneMonth) return UsualPeriod{"$$$/month", "monthly"};
    if (*period == oneWeek || *period == sevenDays) return UsualPeriod{"$$$/week", "weekly"};
    return std::nullopt;
}

} // namespace

PlanTexts::PlanTexts(SKProduct const& product, Products const& products, bool introductoryPriceWasOffered)
    : product_(product)
    , products_(products)
    , introductoryPriceWasOffered_(introductoryPriceWasOffered) {}

bool PlanTexts::isYearly() const {
    auto const& period = product_.subscriptionPeriod();
    return period && period->is(1, SKProductPeriodUnit::year);
}

std::string PlanTexts::trial(char const* key) const {
    auto const offer = introductoryPriceWasOffered_ ? nullptr : product_.introductoryPrice();
    if (!isFreeTrial(offer)) return {};
    return replacingOccurrences(Texts::text(key), "%%%",
                                planName({.productSubscriptionPeriod = offer->subscriptionPeriod(),
                                          .capitalizeFirstLetter = false,
                                          .periodUnitDown = true}));
}

std::string PlanTexts::price() const { return PremiumManager::price(product_); }

std::string PlanTexts::billedAmount() const {
    auto const words = usual(product_.subscriptionPeriod());
    return words ? filledWithPrice(words->priceKey, price()) : price();
}

std::string PlanTexts::share() const {
    if (!isYearly()) return {};
    return firstWithPeriod(products_, {oneMonth})
               ? filledWithPrice("$$$/month", PremiumManager::price(product_, 12))
               : filledWithPrice("$$$/week", PremiumManager::price(product_, 52));
}

std::string PlanTexts::saving() const {
    if (!isYearly()) return {};
    auto const monthly = firstWithPeriod(products_, {oneMonth});
    auto const other = monthly ? monthly : firstWithPeriod(products_, {oneWeek, sevenDays});
    // Nothing is saved against a free plan, and a dearer year is nothing to praise.
    if (!other || other->price() == Decimal{0}) return {};
    auto const percentage = savingPercentage(product_.price(), other->price(), monthly ? 12 : 52);
    if (percentage <= 0) return {};
    return replacingOccurrences(Texts::text("Save %%% per year"), "%%", std::to_string(percentage));
}

std::string PlanTexts::name() const {
    auto const& period = product_.subscriptionPeriod();
    if (!period || period->numberOfUnits == 0) return product_.localizedTitle();
    if (auto const words = usual(period)) return localizedCapitalized(Texts::text(words->adjective));
    return planName(
        {.productSubscriptionPeriod = *period, .capitalizeFirstLetter = true, .periodUnitDown = false});
}

} // namespace trelundo
