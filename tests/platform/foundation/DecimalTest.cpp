#include "trelundo/platform/foundation/Decimal.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace trelundo {
namespace {

Decimal decimal(std::string_view text) {
    auto const number = Decimal::parse(text);
    EXPECT_TRUE(number) << text;
    return number.value_or(Decimal::notANumber());
}

std::string plain(std::string_view text) { return decimal(text).description(); }

TEST(DecimalTest, ReadsAndWritesPlainDigits) {
    struct Case {
        std::string_view written, digits;
    };
    for (auto const& [written, digits] :
         {Case{"59.99", "59.99"}, Case{"-0.5", "-0.5"}, Case{"+7", "7"}, Case{".25", "0.25"}, Case{"3.", "3"},
          Case{"1200.00", "1200"}, Case{"-0", "0"}, Case{"1e3", "1000"}, Case{"12.5E-3", "0.0125"},
          Case{"00.0010", "0.001"}, Case{"0e999999999999", "0"}, Case{"1e-400", "0"},
          Case{"1e-99999999999999", "0"}})
        EXPECT_EQ(plain(written), digits) << written;
    EXPECT_EQ(plain("1e127"), "1" + std::string(127, '0'));
    EXPECT_EQ(plain("1e-128"), "0." + std::string(127, '0') + "1");
    EXPECT_EQ(Decimal{std::numeric_limits<std::int64_t>::min()}.description(), "-9223372036854775808");
    for (std::string_view const text : {"", "-", ".", "1,5", "1.2.3", "1e", "1e+", "e5", " 1", "1 ", "0x10",
                                        "NaN", "--1", "1e5x", "inf", "1e166", "1e99999999999999"})
        EXPECT_FALSE(Decimal::parse(text)) << text;
    EXPECT_FALSE(Decimal::parse(std::string_view{"1\0", 2}));
}

TEST(DecimalTest, KeepsThirtyEightDigitsAndRoundsTheRestHalfAwayFromZero) {
    EXPECT_EQ(plain("12345678901234567890123456789012345678"), "12345678901234567890123456789012345678");
    EXPECT_EQ(plain("123456789012345678901234567890123456785"), "123456789012345678901234567890123456790");
    EXPECT_EQ(plain("-1.23456789012345678901234567890123456785"), "-1.2345678901234567890123456789012345679");
    EXPECT_EQ(plain("99999999999999999999999999999999999999.5"), "1" + std::string(38, '0'));
    EXPECT_EQ(decimal("5e-129"), decimal("1e-128"));
    EXPECT_TRUE(decimal("4e-129").isZero());
    struct {
        char const *dividend, *divisor, *quotient;
    } const rows[] = {
        {"59.99", "12", "4.9991666666666666666666666666666666667"},
        {"59.99", "52", "1.1536538461538461538461538461538461538"},
        {"-2", "3", "-0.66666666666666666666666666666666666667"},
        {"9.99", "1", "9.99"},
        {"0", "-7", "0"},
    };
    for (auto const& [dividend, divisor, quotient] : rows)
        EXPECT_EQ((decimal(dividend) / decimal(divisor)).description(), quotient);
    EXPECT_EQ(decimal("1e-128") / decimal("2"), decimal("1e-128")) << "half of the smallest rounds away";
    EXPECT_TRUE((decimal("1e-128") / decimal("3")).isZero());
}

TEST(DecimalTest, SumsDifferencesAndProductsAreExact) {
    EXPECT_EQ(decimal("0.1") + decimal("0.2"), decimal("0.3"));
    EXPECT_EQ(decimal("5") - decimal("7.25"), decimal("-2.25"));
    EXPECT_EQ(decimal("-1.5") * decimal("-0.2"), decimal("0.3"));
    EXPECT_FALSE((decimal("-0.1") + decimal("0.1")).isNegative() ||
                 (decimal("0") * decimal("-1")).isNegative());
    EXPECT_EQ(decimal("1e127") + decimal("1e-128"), decimal("1e127"))
        << "the small one lies beyond the digits";
    EXPECT_EQ(decimal("9999999999999999999") * decimal("9999999999999999999"),
              decimal("99999999999999999980000000000000000001"));
}

TEST(DecimalTest, AgreesWithIntegerArithmetic) {
    std::mt19937_64 random{7};
    for (int i = 0; i < 2000; ++i) {
        auto const left = static_cast<std::int32_t>(random());
        auto const right = static_cast<std::int32_t>(random());
        Decimal const a{std::int64_t{left}}, b{std::int64_t{right}};
        EXPECT_EQ(a + b, Decimal{std::int64_t{left} + right});
        EXPECT_EQ(a - b, Decimal{std::int64_t{left} - right});
        EXPECT_EQ(a * b, Decimal{std::int64_t{left} * right});
        EXPECT_EQ(a <=> b, left <=> right);
        EXPECT_EQ(right == 0 ? a : a * b / b, a);
    }
}

TEST(DecimalTest, NaNSpreadsEqualsItselfAndOrdersFirst) {
    auto const nan = Decimal::notANumber();
    auto const one = decimal("1"), large = decimal("1e127");
    for (auto const& result :
         {one / Decimal{0}, Decimal{0} / Decimal{0}, nan + one, one - nan, nan * Decimal{0}, one / nan,
          large * decimal("1e39"), large / decimal("1e-128"),
          decimal("99999999999999999999999999999999999999e127") + large})
        EXPECT_EQ(result.description(), "NaN");
    EXPECT_FALSE((large * decimal("1e37")).isNaN());
    EXPECT_TRUE((decimal("1e-128") * decimal("0.1")).isZero());
    EXPECT_LT(nan, decimal("-1e127"));
    EXPECT_FALSE(nan.isZero() || nan.isNegative() || (-nan).isNegative());
    EXPECT_TRUE(std::isnan(nan.doubleValue()));
}

TEST(DecimalTest, ComparesByValue) {
    EXPECT_EQ(decimal("10e127"), decimal("1e128"));
    constexpr std::string_view ascending[] = {
        "-10", "-9.99", "-1e-128", "0", "9.99", "10", "99999999999999999999999999999999999999", "1e127"};
    for (auto const* next = ascending + 1; next != std::end(ascending); ++next)
        EXPECT_EQ(decimal(*next) <=> decimal(next[-1]), std::strong_ordering::greater) << *next;
}

TEST(DecimalTest, GivesTheNearestDouble) {
    for (std::string const text : {"59.99", "0.1", "-1e-128", "4.5", "9007199254740993", "1e127"})
        EXPECT_EQ(decimal(text).doubleValue(), std::stod(text)) << text;
}

} // namespace
} // namespace trelundo
