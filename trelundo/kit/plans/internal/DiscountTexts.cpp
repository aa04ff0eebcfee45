#include "trelundo/kit/plans/internal/DiscountTexts.h"

#include "trelundo/kit/common/Texts.h"
#include "trelundo/kit/plans/PlanName.h"
#include "trelundo/kit/plans/internal/SubscriptionPeriods.h"
#include "trelundo/kit/plans/internal/TextTemplates.h"
#include "trelundo/kit/store/PremiumManager.h"
#include "trelundo/platform/foundation/Strings.h"

namespace trelundo {

namespace {

using Mode = SKProductDiscountPaymentMode;

/// `price` with the suffix of a unit; empty for a day or any other unit.
std::string priceForUnit(SKProductPeriodUnit unit, std::string_view price) {
    switch (unit) {
    case SKProductPeriodUnit::week:
        return filledWithPrice("$$$/week", price);
    case SKProductPeriodUnit::month:
        return filledWithPrice("$$$/mo", price);
    case SKProductPeriodUnit::year:
        return filledWithPrice("$$$/year", price);
    case SKProductPeriodUnit::day:
        break;
    }
    return {};
}

bool runsForOneYear(SKProductDiscount const& discount) {
    return discount.numberOfPeriods() == 1 && discount.subscriptionPeriod() == oneYear;
}

/// What fills the two sentences.
struct Parts {
    std::string period;
    std::string price;
    std::string leadIn;
};

std::string periodOf(SKProductPeriodUnit unit, int count) {
    return PremiumManager::period({.unit = unit, .numberOfPeriods = count, .capitalizeFirstLetter = true});
}

Parts partsOf(SKProductDiscount const& discount, SKProduct const& product) {
    auto const& period = discount.subscriptionPeriod();
    auto const price = [&](int div) { return PremiumManager::price(discount, product, div); };
    if (runsForOneYear(discount))
        return {periodOf(period.unit, period.numberOfUnits), filledWithPrice("$$$/mo", price(12)),
                filledWithPrice("Just $$$ for a year", price(1)) + ", "};
    switch (discount.paymentMode()) {
    case Mode::payAsYouGo:
        return {periodOf(period.unit, discount.numberOfPeriods()), priceForUnit(period.unit, price(1)), {}};
    case Mode::payUpFront:
        return {periodOf(period.unit, period.numberOfUnits), isolatedPrice(price(1)), {}};
    case Mode::freeTrial:
        return {
            planName(
                {.productSubscriptionPeriod = period, .capitalizeFirstLetter = true, .periodUnitDown = true}),
            {},
            {}};
    }
    return {};
}

/// Empty for a period other than exactly one week, month or year.
std::string regularPrice(SKProduct const& product) {
    auto const& period = product.subscriptionPeriod();
    return period && period->numberOfUnits == 1 ? priceForUnit(period->unit, PremiumManager::price(product))
                                                : std::string{};
}

} // namespace

DiscountTexts discountTexts(SKProductDiscount const& discount, SKProduct const& product) {
    auto const parts = partsOf(discount, product);
    bool const isTrial = discount.paymentMode() == Mode::freeTrial;
    auto terms = filledWithPeriod(isTrial ? "Get %%% FREE!" : "%%% for Just $$$", parts.period);
    if (!isTrial) terms = replacingOccurrences(terms, "$$$", parts.price);
    auto const afterwards = replacingOccurrences(Texts::text("@@@$$$ after"), "@@@", parts.leadIn);
    return {std::move(terms), replacingOccurrences(afterwards, "$$$", regularPrice(product))};
}

} // namespace trelundo
