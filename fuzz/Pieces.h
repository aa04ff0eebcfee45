#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace trelundo::fuzz {

inline std::string_view textOf(std::uint8_t const* data, std::size_t size) {
    return {reinterpret_cast<char const*>(data), size};
}

/// The input cut at its line ends, as `count` texts or more; what is missing is empty.
inline std::vector<std::string> pieces(std::string_view text, std::size_t count = 0) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        auto const end = text.find('\n');
        lines.emplace_back(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    if (lines.size() < count) lines.resize(count);
    return lines;
}

} // namespace trelundo::fuzz
