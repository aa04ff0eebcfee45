#include "trelundo/kit/plans/internal/PlanTexts.h"

#include "trelundo/kit/common/Texts.h"
#include "trelundo/kit/plans/PlanName.h"
#include "trelundo/kit/plans/internal/OfferDiscount.h"
#include "trelundo/kit/plans/internal/Saving.h"
#include "trelundo/kit/plans/internal/TextTemplates.h"
#include "trelundo/kit/store/PremiumManager.h"
#include "trelundo/platform/foundation/Strings.h"

namespace trelundo {

namespace {

/// The words for one of the three usual periods.
struct UsualPeriod {
    char const* priceKey;
    char const* adjective;
};

std::optional<UsualPeriod> usual(std::optional<SKProductSubscriptionPeriod> const& period) {
    if (!period) return std::nullopt;
    if (*period == oneYear) return UsualPeriod{"$$$/year", "yearly"};
    if (*period == oneMonth) return UsualPeriod{"$$$/month", "monthly"};
    if (*period == oneWeek || *period == sevenDays) return UsualPeriod{"$$$/week", "weekly"};
    return std::nullopt;
}

} // namespace

PlanTexts::PlanTexts(SKProduct const& product, Products const& products, bool introductoryPriceWasOffered)
    : product_(product)
    , products_(products)
    , introductoryPriceWasOffered_(introductoryPriceWasOffered) {}

bool PlanTexts::isYearly() const { return product_.subscriptionPeriod() == oneYear; }

std::string PlanTexts::trial(char const* key) const {
    auto const offer = introductoryOffer(product_, introductoryPriceWasOffered_);
    return isFreeTrial(offer) ? filledWithTrial(key, *offer, false) : std::string{};
}

std::string PlanTexts::price() const { return isolatedPrice(PremiumManager::price(product_)); }

std::string PlanTexts::billedAmount() const {
    auto const words = usual(product_.subscriptionPeriod());
    return words ? filledWithPrice(words->priceKey, PremiumManager::price(product_)) : price();
}

std::string PlanTexts::share() const {
    if (!isYearly()) return {};
    return firstWithPeriod(products_, {oneMonth})
               ? filledWithPrice("$$$/month", PremiumManager::price(product_, 12))
               : filledWithPrice("$$$/week", PremiumManager::price(product_, 52));
}

std::string PlanTexts::saving() const {
    if (!isYearly()) return {};
    SubscriptionPeriods const weeks{oneWeek, sevenDays};
    auto const other = comparedWithYear(products_, weeks);
    // Nothing is saved against a free plan, and a dearer year is nothing to praise.
    if (!other || other->price() == Decimal{0}) return {};
    auto const saving = *yearlySaving(product_, products_, weeks);
    return saving > 0 ? savingText(saving) : std::string{};
}

std::string PlanTexts::name() const {
    auto const& period = product_.subscriptionPeriod();
    if (!period || period->numberOfUnits == 0) return product_.localizedTitle();
    if (auto const words = usual(period)) return localizedCapitalized(Texts::text(words->adjective));
    return planName(
        {.productSubscriptionPeriod = *period, .capitalizeFirstLetter = true, .periodUnitDown = false});
}

} // namespace trelundo
