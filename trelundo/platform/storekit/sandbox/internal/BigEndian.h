#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace trelundo {

/// The number in four bytes from `at` on, which must be there, the most significant byte first.
inline std::uint32_t bigEndian32(std::string_view bytes, std::size_t at) {
    std::uint32_t value = 0;
    for (std::size_t i = at; i < at + 4; ++i) value = value << 8U | static_cast<unsigned char>(bytes[i]);
    return value;
}

} // namespace trelundo
