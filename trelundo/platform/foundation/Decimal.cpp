#include "trelundo/platform/foundation/Decimal.h"

#include <algorithm>
#include <array>
#include <boost/multiprecision/cpp_int.hpp>
#include <charconv>
#include <limits>
#include <utility>

namespace trelundo {

namespace {

namespace mp = boost::multiprecision;

// Wide enough for two significands aligned over the whole range of exponents: 38 + 255 digits.
using Wide = mp::number<mp::cpp_int_backend<1024, 1024, mp::unsigned_magnitude, mp::unchecked, void>>;

// Holds every significand, and the power of ten that none reaches.
__extension__ using Native = unsigned __int128;
constexpr Native significandLimit = Native{10'000'000'000'000'000'000U} * 10'000'000'000'000'000'000U;

Native native(Wide const& number) {
    auto const high = static_cast<std::uint64_t>(number >> 64);
    return Native{high} << 64 | static_cast<std::uint64_t>(number & ~std::uint64_t{0});
}

Wide const& powerOfTen(int exponent) {
    static auto const powers = [] {
        std::array<Wide, 300> table{1};
        for (std::size_t i = 1; i < table.size(); ++i) table[i] = table[i - 1] * 10;
        return table;
    }();
    return powers[static_cast<std::size_t>(exponent)];
}

int digitCount(Wide const& number) {
    if (number.is_zero()) return 0;
    // The bit length gives the count or one less: a bit is 1292913986 / 2^32 digits.
    auto const estimate = static_cast<int>((mp::msb(number) + std::uint64_t{1}) * 1292913986U >> 32);
    return number >= powerOfTen(estimate) ? estimate + 1 : estimate;
}

std::string digitsOf(Native number) {
    constexpr std::uint64_t half = 10'000'000'000'000'000'000U;
    if (number < half) return std::to_string(static_cast<std::uint64_t>(number));
    auto const low = std::to_string(static_cast<std::uint64_t>(number % half));
    return std::to_string(static_cast<std::uint64_t>(number / half)) + std::string(19 - low.size(), '0') +
           low;
}

bool isDigit(char character) { return character >= '0' && character <= '9'; }

/// Walks over the digits at the front of `text` and returns them.
std::string_view takeDigits(std::string_view& text) {
    auto const end = std::ranges::find_if_not(text, isDigit);
    auto const count = static_cast<std::size_t>(end - text.begin());
    auto const digits = text.substr(0, count);
    text.remove_prefix(count);
    return digits;
}

bool takeSign(std::string_view& text) {
    bool const isNegative = text.starts_with('-');
    if (isNegative || text.starts_with('+')) text.remove_prefix(1);
    return isNegative;
}

/// The exponent after the digits: 0 when `text` is empty, none when it is not an exponent.
std::optional<int> takeExponent(std::string_view text) {
    if (text.empty()) return 0;
    if (text.front() != 'e' && text.front() != 'E') return std::nullopt;
    text.remove_prefix(1);
    bool const isNegative = takeSign(text);
    auto const digits = takeDigits(text);
    if (digits.empty() || !text.empty()) return std::nullopt;
    constexpr int beyondEveryNumber = 100'000'000;
    int exponent = beyondEveryNumber;
    std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
    exponent = std::min(exponent, beyondEveryNumber);
    return isNegative ? -exponent : exponent;
}

} // namespace

/// The one place where numbers are taken apart and put together again.
struct Decimal::Arithmetic {
    static Native nativeSignificand(Decimal const& number) {
        return Native{number.high_} << 64 | number.low_;
    }
    static Wide significand(Decimal const& number) { return (Wide{number.high_} << 64) | number.low_; }

    /// `significand` times ten to `exponent`, rounded once to what a Decimal holds.
    static Decimal compose(bool isNegative, Wide significand, int exponent) {
        int const surplus = std::max(digitCount(significand) - maximumDigits, minimumExponent - exponent);
        if (surplus > 0) {
            significand = dropDigits(significand, surplus);
            exponent += surplus;
        }
        return composeRounded(isNegative, native(significand), exponent);
    }

    static Decimal composeRounded(bool isNegative, Native significand, int exponent) {
        if (significand == 0) return {};
        stripZeros(significand, exponent);
        for (; exponent > maximumExponent; --exponent) {
            if (significand >= significandLimit / 10) return notANumber();
            significand *= 10;
        }
        if (significand >= significandLimit) return notANumber();
        Decimal number;
        number.low_ = static_cast<std::uint64_t>(significand);
        number.high_ = static_cast<std::uint64_t>(significand >> 64);
        number.exponent_ = static_cast<std::int16_t>(exponent);
        number.isNegative_ = isNegative;
        return number;
    }

    /// Rounds half away from zero, for which the first dropped digit alone decides.
    static Wide dropDigits(Wide const& significand, int count) {
        if (count > digitCount(significand)) return 0;
        Wide const kept = significand / powerOfTen(count - 1);
        return (kept + 5) / 10;
    }

    static void stripZeros(Native& significand, int& exponent) {
        constexpr std::pair<int, std::uint64_t> steps[] = {{16, 10'000'000'000'000'000},
                                                           {16, 10'000'000'000'000'000},
                                                           {8, 100'000'000},
                                                           {4, 10'000},
                                                           {2, 100},
                                                           {1, 10}};
        if (significand % 2 != 0 || significand % 10 != 0) return; // most numbers, told cheaply
        for (auto const& [digits, power] : steps) {
            if (exponent + digits > maximumExponent || significand % power != 0) continue;
            significand /= power;
            exponent += digits;
        }
    }

    /// Both significands over the smaller of the two exponents.
    struct Aligned {
        Wide left, right;
        int exponent;
    };
    static Aligned align(Decimal const& left, Decimal const& right) {
        int const exponent = std::min(left.exponent_, right.exponent_);
        return {significand(left) * powerOfTen(left.exponent_ - exponent),
                significand(right) * powerOfTen(right.exponent_ - exponent), exponent};
    }

    static std::strong_ordering compareMagnitudes(Decimal const& left, Decimal const& right) {
        auto const aligned = align(left, right);
        return aligned.left.compare(aligned.right) <=> 0;
    }
};

Decimal::Decimal(std::int64_t value) {
    auto const magnitude = value < 0 ? -static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
    *this = Arithmetic::composeRounded(value < 0, magnitude, 0);
}

Decimal Decimal::notANumber() {
    Decimal number;
    number.isNaN_ = true;
    return number;
}

std::optional<Decimal> Decimal::parse(std::string_view text) {
    bool const isNegative = takeSign(text);
    std::string digits{takeDigits(text)};
    auto const wholeDigits = digits.size();
    if (text.starts_with('.')) {
        text.remove_prefix(1);
        digits += takeDigits(text);
    }
    auto exponent = takeExponent(text);
    if (digits.empty() || !exponent) return std::nullopt;

    // Digits beyond the first 40 significant ones cannot change a rounding that looks at one digit.
    auto const leadingZeros = std::min(digits.find_first_not_of('0'), digits.size());
    auto const kept = std::string_view{digits}.substr(leadingZeros, 40);
    if (kept.empty()) return Decimal{};
    auto const weight = static_cast<std::int64_t>(wholeDigits) -
                        static_cast<std::int64_t>(leadingZeros + kept.size()) + *exponent;
    if (weight > maximumExponent + maximumDigits) return std::nullopt;
    if (weight < minimumExponent - 2 * maximumDigits) return Decimal{};
    Wide significand = 0;
    for (char const digit : kept) significand = significand * 10 + static_cast<unsigned>(digit - '0');
    auto number = Arithmetic::compose(isNegative, significand, static_cast<int>(weight));
    if (number.isNaN()) return std::nullopt;
    return number;
}

Decimal Decimal::operator-() const {
    auto copy = *this;
    copy.isNegative_ = !isNegative_ && !isZero() && !isNaN_;
    return copy;
}

Decimal Decimal::operator+(Decimal const& other) const {
    if (isNaN_ || other.isNaN_) return notANumber();
    auto const [left, right, exponent] = Arithmetic::align(*this, other);
    if (isNegative_ == other.isNegative_) return Arithmetic::compose(isNegative_, left + right, exponent);
    if (left >= right) return Arithmetic::compose(isNegative_, left - right, exponent);
    return Arithmetic::compose(other.isNegative_, right - left, exponent);
}

Decimal Decimal::operator-(Decimal const& other) const { return *this + -other; }

Decimal Decimal::operator*(Decimal const& other) const {
    if (isNaN_ || other.isNaN_) return notANumber();
    return Arithmetic::compose(isNegative_ != other.isNegative_,
                               Arithmetic::significand(*this) * Arithmetic::significand(other),
                               exponent_ + other.exponent_);
}

Decimal Decimal::operator/(Decimal const& other) const {
    if (isNaN_ || other.isNaN_ || other.isZero()) return notANumber();
    static Decimal const one{1};
    if (other == one) return *this;
    auto const dividend = Arithmetic::significand(*this);
    auto const divisor = Arithmetic::significand(other);
    // Leaves one digit more than is kept, to round by.
    int const shift = std::max(maximumDigits + 1 + digitCount(divisor) - digitCount(dividend), 0);
    return Arithmetic::compose(isNegative_ != other.isNegative_, dividend * powerOfTen(shift) / divisor,
                               exponent_ - other.exponent_ - shift);
}

std::strong_ordering Decimal::operator<=>(Decimal const& other) const {
    if (isNaN_ || other.isNaN_) return other.isNaN_ <=> isNaN_;
    if (isNegative_ != other.isNegative_) return other.isNegative_ <=> isNegative_;
    return isNegative_ ? Arithmetic::compareMagnitudes(other, *this)
                       : Arithmetic::compareMagnitudes(*this, other);
}

double Decimal::doubleValue() const {
    auto const text = description();
    double value = 0;
    if (isNaN_) return std::numeric_limits<double>::quiet_NaN();
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

std::string Decimal::description() const {
    if (isNaN_) return "NaN";
    auto digits = digitsOf(Arithmetic::nativeSignificand(*this));
    if (exponent_ >= 0) {
        digits.append(static_cast<std::size_t>(exponent_), '0');
    } else {
        auto const fraction = static_cast<std::size_t>(-exponent_);
        if (digits.size() <= fraction) digits.insert(0, fraction + 1 - digits.size(), '0');
        digits.insert(digits.size() - fraction, 1, '.');
    }
    return isNegative_ ? '-' + digits : digits;
}

} // namespace trelundo
