#pragma once

#include "trelundo/kit/plans/internal/SubscriptionPeriods.h"

#include <cstdint>
#include <optional>
#include <string>

namespace trelundo {

/// How much cheaper `yearlyPrice` is than `count` times `price`, in percent, rounded to tens with halves away
/// from zero. Not bounded: a dearer year gives a negative figure. A zero `price` ends the program.
std::int64_t savingPercentage(Decimal const& yearlyPrice, Decimal const& price, int count);

/// The saving of a yearly product against the first monthly one, else against the first whose period is among
/// `weeks`. Absent when there is neither, and against a free one.
std::optional<std::int64_t> yearlySaving(SKProduct const& yearly, Products const& products,
                                         SubscriptionPeriods weeks);

/// "Save 50% per year".
std::string savingText(std::int64_t percentage);

} // namespace trelundo
