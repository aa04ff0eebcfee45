#include "trelundo/platform/foundation/FatalError.h"

#include <cmath>
#include <cstdlib>
#include <fmt/core.h>

namespace trelundo {

void fatalError(std::string_view text, std::source_location where) {
    fmt::print(stderr, "Fatal error: {}: file {}, line {}\n", text, where.file_name(), where.line());
    std::fflush(stderr);
    std::abort();
}

std::int64_t trappingInteger(double value, std::source_location where) {
    if (std::isnan(value)) fatalError("Double value cannot be converted to Int because it is NaN", where);
    if (std::isinf(value))
        fatalError("Double value cannot be converted to Int because it is infinite", where);
    constexpr double limit = 0x1p63;
    double const whole = std::trunc(value);
    if (whole < -limit || whole >= limit)
        fatalError("Double value cannot be converted to Int because it is out of range", where);
    return static_cast<std::int64_t>(whole);
}

int trappingSum(int left, int right, std::source_location where) {
    int sum = 0;
    if (__builtin_add_overflow(left, right, &sum)) fatalError("Arithmetic overflow", where);
    return sum;
}

std::int64_t trappingProduct(std::int64_t left, std::int64_t right, std::source_location where) {
    std::int64_t product = 0;
    if (__builtin_mul_overflow(left, right, &product)) fatalError("Arithmetic overflow", where);
    return product;
}

} // namespace trelundo
