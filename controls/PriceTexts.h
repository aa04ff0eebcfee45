#pragma once

#include "platform/storekit/SKProduct.h"

#include <string>
#include <string_view>

namespace trelundo {

/// The localised `key` with every "$$$" replaced by `price`.
std::string filledWithPrice(std::string_view key, std::string_view price);

/// `price` with the suffix of a unit ("$$$/week", "$$$/mo", "$$$/year"); empty for a day or any other unit.
std::string priceForUnit(SKProductPeriodUnit unit, std::string_view price);

/// Whether a discount runs for exactly one period of exactly one year.
bool runsForOneYear(SKProductDiscount const& offer);

} // namespace trelundo
