#pragma once

#include <string>
#include <string_view>

namespace trelundo {

/// The localised `key` with every "$$$" replaced by `price`.
std::string filledWithPrice(std::string_view key, std::string_view price);

} // namespace trelundo
