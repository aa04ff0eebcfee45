#pragma once

#include "trelundo/kit/plans/internal/SubscriptionPeriods.h"

#include <cstdint>
#include <optional>
#include <string>

namespace trelundo {

/// How much cheaper `yearlyPrice` is than `count` times `price`, in percent, rounded to tens with halves away
/// from zero. Not bounded: a dearer year gives a negative figure. A zero `price` ends the program.
std::int64_t savingPercentage(Decimal const& yearlyPrice, Decimal const& price, int count);

/// What a year is compared with: the first monthly product, else the first whose period is among `weeks`;
/// null when there is neither.
Ref<SKProduct> comparedWithYear(Products const& products, SubscriptionPeriods weeks);

/// The saving of a yearly product against comparedWithYear(); absent when there is no such product. A free
/// one ends the program.
std::optional<std::int64_t> yearlySaving(SKProduct const& yearly, Products const& products,
                                         SubscriptionPeriods weeks);

/// "Save 50% per year".
std::string savingText(std::int64_t percentage);

} // namespace trelundo
