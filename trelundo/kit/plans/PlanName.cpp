#include "trelundo/kit/plans/PlanName.h"

#include "trelundo/kit/common/Texts.h"
#include "trelundo/kit/store/PremiumManager.h"
#include "trelundo/platform/foundation/Strings.h"

namespace trelundo {

std::string planName(PlanPeriod const& plan) {
    auto const& period = plan.productSubscriptionPeriod;
    bool const isOneYear = period.is(1, SKProductPeriodUnit::year);
    if (plan.periodUnitDown && (isOneYear || period.is(1, SKProductPeriodUnit::week))) {
        auto const text = Texts::text(isOneYear ? "12 months" : "7 days");
        return plan.capitalizeFirstLetter ? localizedCapitalized(text) : text;
    }
    return PremiumManager::period({.unit = period.unit,
                                   .numberOfPeriods = period.numberOfUnits,
                                   .capitalizeFirstLetter = plan.capitalizeFirstLetter});
}

} // namespace trelundo
