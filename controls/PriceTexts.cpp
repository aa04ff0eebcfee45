#include "controls/PriceTexts.h"

#include "common/Common.h"
#include "platform/foundation/Strings.h"

namespace trelundo {

std::string filledWithPrice(std::string_view key, std::string_view price) {
    return replacingOccurrences(Common::text(key), "$$$", price);
}

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

bool runsForOneYear(SKProductDiscount const& offer) {
    return offer.numberOfPeriods() == 1 && offer.subscriptionPeriod().is(1, SKProductPeriodUnit::year);
}

} // namespace trelundo
