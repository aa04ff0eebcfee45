#pragma once

#include <boost/multiprecision/cpp_dec_float.hpp>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace trelundo {

/// An exact decimal number of 38 significant digits, or NaN. Addition, subtraction and multiplication are exact
/// while the result fits; a quotient is rounded half away from zero at the last digit. Division by zero and
/// overflow give NaN, underflow gives zero. NaN equals NaN and orders below every number.
class Decimal {
public:
    Decimal() = default;
    Decimal(std::int64_t value);
    Decimal(int value) : Decimal(static_cast<std::int64_t>(value)) {}
    static Decimal notANumber();

    /// Reads digits with an optional sign, "." as separator and an optional exponent. None when `text` is
    /// anything else, in part or in whole.
    static std::optional<Decimal> parse(std::string_view text);

    bool isNaN() const;
    bool isZero() const;
    bool isNegative() const;

    Decimal operator+(Decimal const& other) const;
    Decimal operator-(Decimal const& other) const;
    Decimal operator*(Decimal const& other) const;
    Decimal operator/(Decimal const& other) const;

    bool operator==(Decimal const& other) const;
    std::strong_ordering operator<=>(Decimal const& other) const;

    /// The nearest double.
    double doubleValue() const;
    /// Plain digits with ".", no grouping, no exponent; "NaN".
    std::string description() const;

private:
    using Value = boost::multiprecision::cpp_dec_float<38>;
    explicit Decimal(Value value) : value_(std::move(value)) {}

    Value value_{};
};

} // namespace trelundo
