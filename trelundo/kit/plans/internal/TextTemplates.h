#pragma once

#include "trelundo/platform/storekit/SKProduct.h"

#include <string>
#include <string_view>

namespace trelundo {

/// `price` as it stands in a text of the user's language. In one written from right to left it is isolated:
/// its sign and its digits keep their order, and what follows stays on its far side, in whatever letters the
/// currency is written.
std::string isolatedPrice(std::string_view price);

/// The localised `key` with every "$$$" replaced by `price`, isolated.
std::string filledWithPrice(std::string_view key, std::string_view price);

/// The localised `key` with every "%%%" replaced by `period`.
std::string filledWithPeriod(std::string_view key, std::string_view period);

/// filledWithPeriod() with the length of one period of `trial`, a year told in months and a week in days.
std::string filledWithTrial(std::string_view key, SKProductDiscount const& trial, bool capitalizeFirstLetter);

} // namespace trelundo
