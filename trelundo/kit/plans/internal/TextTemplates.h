#pragma once

#include "trelundo/platform/storekit/SKProduct.h"

#include <string>
#include <string_view>

namespace trelundo {

/// The localised `key` with every "$$$" replaced by `price`.
std::string filledWithPrice(std::string_view key, std::string_view price);

/// The localised `key` with every "%%%" replaced by `period`.
std::string filledWithPeriod(std::string_view key, std::string_view period);

/// filledWithPeriod() with the length of one period of `trial`, a year told in months and a week in days.
std::string filledWithTrial(std::string_view key, SKProductDiscount const& trial, bool capitalizeFirstLetter);

} // namespace trelundo
