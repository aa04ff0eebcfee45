#pragma once

#include <cstdint>
#include <source_location>
#include <string_view>

namespace trelundo {

/// Ends the program with `text`, the file and the line on standard error. The one way out for programming
/// errors: an archive where none is allowed, a trapped integer conversion, a counter overflow.
[[noreturn]] void fatalError(std::string_view text,
                             std::source_location where = std::source_location::current());

/// The double as an integer, truncated toward zero; ends the program when it is NaN, infinite or out of
/// range.
std::int64_t trappingInteger(double value, std::source_location where = std::source_location::current());

/// `left + right`; ends the program on overflow.
int trappingSum(int left, int right, std::source_location where = std::source_location::current());

/// `left * right`; ends the program on overflow.
std::int64_t trappingProduct(std::int64_t left, std::int64_t right,
                             std::source_location where = std::source_location::current());

} // namespace trelundo
