#pragma once

#include "trelundo/kit/store/Products.h"

#include <initializer_list>

namespace trelundo {

inline constexpr SKProductSubscriptionPeriod sevenDays{7, SKProductPeriodUnit::day};
inline constexpr SKProductSubscriptionPeriod oneWeek{1, SKProductPeriodUnit::week};
inline constexpr SKProductSubscriptionPeriod oneMonth{1, SKProductPeriodUnit::month};
inline constexpr SKProductSubscriptionPeriod twelveMonths{12, SKProductPeriodUnit::month};
inline constexpr SKProductSubscriptionPeriod oneYear{1, SKProductPeriodUnit::year};

using SubscriptionPeriods = std::initializer_list<SKProductSubscriptionPeriod>;

/// The first product whose period is one of `periods`; null when there is none.
Ref<SKProduct> firstWithPeriod(Products const& products, SubscriptionPeriods periods);

} // namespace trelundo
