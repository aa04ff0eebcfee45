#pragma once

#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace trelundo::fuzz {

/// Each fuzzer defines what it does with an input.
void run(std::string_view input);

/// Ends the program, which counts as a find, unless the condition holds.
inline void require(bool condition) {
    if (!condition) std::abort();
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
