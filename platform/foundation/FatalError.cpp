#include "platform/foundation/FatalError.h"

#include <cmath>
#include <cstdlib>
#include <fmt/core.h>
#include <limits>

namespace trelundo {

void fatalError(std::string_view text, std::source_location where) {
    fmt::print(stderr, "Fatal error: {}: file {}, line {}\n", text, where.file_name(), where.line());
    std::fflush(stderr);
    std::abort();
}

int trappingInteger(double value, std::source_location where) {
    if (std::isnan(value)) fatalError("Double value cannot be converted to Int because it is NaN", where);
    if (std::isinf(value))
        fatalError("Double value cannot be converted to Int because it is infinite", where);
    double const whole = std::trunc(value);
    if (whole < std::numeric_limits<int>::min() || whole > std::numeric_limits<int>::max())
        fatalError("Double value cannot be converted to Int because it is out of range", where);
    return static_cast<int>(whole);
}

int trappingSum(int left, int right, std::source_location where) {
    int sum = 0;
    if (__builtin_add_overflow(left, right, &sum)) fatalError("Arithmetic overflow", where);
    return sum;
}

} // namespace trelundo
