#include "trelundo/kit/common/Texts.h"
#include "trelundo/kit/store/PremiumManager.h"
#include "trelundo/platform/foundation/FatalError.h"
#include "trelundo/platform/foundation/Strings.h"

namespace trelundo {

std::string PremiumManager::price(Price const& price) {
    NumberFormatter formatter{price.priceLocale};
    formatter.setNumberStyle(NumberFormatter::Style::currency);
    formatter.setRoundingMode(price.roundingMode);
    formatter.setMaximumFractionDigits(2);
    auto text = formatter.string(price.price / Decimal{price.div});
    if (!text) fatalError("A number formatter gave no text for a price");
    return *std::move(text);
}

std::string PremiumManager::price(SKProduct const& product, int div) {
    return price({.price = product.price(), .priceLocale = product.priceLocale(), .div = div});
}

std::string PremiumManager::price(SKProductDiscount const& discount, SKProduct const& product, int div) {
    return price({.price = discount.price(), .priceLocale = product.priceLocale(), .div = div});
}

std::string PremiumManager::period(Period const& period) {
    auto const text = replacingOccurrences(periodTemplate(period.unit, period.numberOfPeriods), "2",
                                           std::to_string(period.numberOfPeriods));
    return period.capitalizeFirstLetter ? localizedCapitalized(text) : text;
}

std::string PremiumManager::periodTemplate(SKProductPeriodUnit unit, int numberOfPeriods) {
    bool const isSingular = numberOfPeriods == 1;
    switch (unit) {
    case SKProductPeriodUnit::day:
        return Texts::text(isSingular ? "1 day" : "2 days");
    case SKProductPeriodUnit::week:
        return Texts::text(isSingular ? "1 week" : "2 weeks");
    case SKProductPeriodUnit::month:
        return Texts::text(isSingular ? "1 month" : "2 months");
    case SKProductPeriodUnit::year:
        return Texts::text(isSingular ? "1 year" : "2 years");
    }
    return {};
}

} // namespace trelundo
