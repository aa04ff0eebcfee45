#pragma once

#include "trelundo/platform/storekit/SKProduct.h"

#include <string>

namespace trelundo {

struct PlanPeriod {
    SKProductSubscriptionPeriod productSubscriptionPeriod;
    bool capitalizeFirstLetter;
    bool periodUnitDown; // one year as 12 months, one week as 7 days
};
/// A subscription period's name; empty for an unknown unit.
std::string planName(PlanPeriod const& plan);

} // namespace trelundo
