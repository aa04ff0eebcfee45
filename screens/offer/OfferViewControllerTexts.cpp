#include "common/Common.h"
#include "controls/PlanTerms.h"
#include "controls/PremiumButton.h"
#include "controls/PriceTexts.h"
#include "platform/foundation/Strings.h"
#include "screens/offer/OfferViewController.h"

namespace trelundo {

namespace {

using Mode = SKProductDiscountPaymentMode;

/// The parts of the two lines. Prices are in the product's currency, not in the discount's.
struct OfferParts {
    std::string period;
    std::string price;
    std::string leadIn;
};

std::string periodOf(SKProductPeriodUnit unit, int count) {
    return PremiumManager::period({.unit = unit, .numberOfPeriods = count, .capitalizeFirstLetter = true});
}

OfferParts partsOf(SKProductDiscount const& discount, SKProduct const& product) {
    auto const price = [&](int div) { return PremiumManager::price(discount, product, div); };
    auto const& period = discount.subscriptionPeriod();
    if (runsForOneYear(discount))
        return {periodOf(period.unit, period.numberOfUnits), filledWithPrice("$$$/mo", price(12)),
                filledWithPrice("Just $$$ for a year", price(1)) + ", "};
    switch (discount.paymentMode()) {
    case Mode::payAsYouGo:
        return {periodOf(period.unit, discount.numberOfPeriods()), priceForUnit(period.unit, price(1)), {}};
    case Mode::payUpFront:
        return {periodOf(period.unit, period.numberOfUnits), price(1), {}};
    case Mode::freeTrial:
        return {
            PremiumButton::plan(
                {.productSubscriptionPeriod = period, .capitalizeFirstLetter = true, .periodUnitDown = true}),
            {},
            {}};
    }
    return {};
}

} // namespace

void OfferViewController::showOffer(SKProduct const& product, SKProductDiscount const& discount) {
    auto const parts = partsOf(discount, product);
    bool const isTrial = discount.paymentMode() == Mode::freeTrial;
    auto const line = replacingOccurrences(Common::text(isTrial ? "Get %%% FREE!" : "%%% for Just $$$"),
                                           "%%%", parts.period);
    offerLabel_->setText(isTrial ? line : replacingOccurrences(line, "$$$", parts.price));

    auto const& period = product.subscriptionPeriod();
    auto const regular = period && period->numberOfUnits == 1
                             ? priceForUnit(period->unit, PremiumManager::price(product))
                             : std::string{};
    auto const info = replacingOccurrences(Common::text("@@@$$$ after"), "@@@", parts.leadIn);
    infoLabel_->setText(replacingOccurrences(info, "$$$", regular) + ".");
}

} // namespace trelundo
