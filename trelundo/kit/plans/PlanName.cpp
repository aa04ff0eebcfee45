#include "plans/PlanName.h"

#include "common/Texts.h"
#include "platform/foundation/Strings.h"
#include "store/PremiumManager.h"

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
