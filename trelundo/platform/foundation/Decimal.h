#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace trelundo {

/// An exact decimal number, or NaN: 38 significant digits and a power of ten from -128 to 127. Addition,
/// subtraction and multiplication are exact while the result fits; what does not fit, and every quotient, is
/// rounded half away from zero at the last digit. Division by zero and overflow give NaN, underflow gives
/// zero, NaN spreads. NaN equals NaN and orders below every number. There is no negative zero.
class Decimal {
public:
    static constexpr int maximumDigits = 38;
    static constexpr int minimumExponent = -128;
    static constexpr int maximumExponent = 127;

    Decimal() = default;
    // NOLINTBEGIN(google-explicit-constructor): whole numbers are decimals.
    Decimal(std::int64_t value);
    Decimal(int value)
        : Decimal(static_cast<std::int64_t>(value)) {}
    // NOLINTEND(google-explicit-constructor)
    static Decimal notANumber();

    /// Reads digits with an optional sign, "." as separator and an optional exponent ("5", "-.5", "1.25e-3").
    /// None when `text` is anything else, in part or in whole, or too large to be held.
    static std::optional<Decimal> parse(std::string_view text);

    bool isNaN() const { return isNaN_; }
    bool isZero() const { return !isNaN_ && high_ == 0 && low_ == 0; }
    bool isNegative() const { return isNegative_; }

    Decimal operator+(Decimal const& other) const;
    Decimal operator-(Decimal const& other) const;
    Decimal operator*(Decimal const& other) const;
    Decimal operator/(Decimal const& other) const;
    Decimal operator-() const;

    /// By value: 1.50 equals 1.5.
    bool operator==(Decimal const& other) const = default;
    std::strong_ordering operator<=>(Decimal const& other) const;

    /// The nearest double.
    double doubleValue() const;
    /// Plain digits with ".", no grouping, no exponent; "NaN".
    std::string description() const;

private:
    struct Arithmetic;

    // The significand in two halves, without trailing zeros; zero has the exponent 0. So equal numbers have
    // equal members.
    std::uint64_t high_ = 0;
    std::uint64_t low_ = 0;
    std::int16_t exponent_ = 0;
    bool isNegative_ = false;
    bool isNaN_ = false;
};

} // namespace trelundo
