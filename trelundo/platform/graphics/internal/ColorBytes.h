#pragma once

#include <cstdint>

namespace trelundo {

/// A colour component clamped to 0...1 as a byte; NaN counts as 0.
std::uint8_t colorByte(double component);

} // namespace trelundo
