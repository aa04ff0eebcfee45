#include "trelundo/platform/foundation/NumberFormatter.h"

#include "tests/support/ScopedState.h"

#include <gtest/gtest.h>

namespace trelundo {
namespace {

using namespace test;
using Style = NumberFormatter::Style;
using Mode = NumberFormatter::RoundingMode;

Decimal decimal(std::string_view text) { return Decimal::parse(text).value(); }

std::string format(NumberFormatter const& formatter, std::string_view number) {
    return formatter.string(decimal(number)).value_or("(none)");
}

NumberFormatter formatterOf(Style style, std::string_view locale = "en_US") {
    NumberFormatter formatter{Locale{locale}};
    formatter.setNumberStyle(style);
    return formatter;
}

NumberFormatter priceFormatter(std::string_view locale) {
    auto formatter = formatterOf(Style::currency, locale);
    formatter.setRoundingMode(Mode::down);
    formatter.setMaximumFractionDigits(2);
    return formatter;
}

TEST(NumberFormatterTest, PricesFollowTheirLocaleAndTheDigitsOfTheirCurrency) {
    struct {
        char const *locale, *number, *text;
    } const rows[] = {
        {"en_US", "1234567.891", "$1,234,567.89"},
        {"en_US", "8", "$8.00"},
        {"en_US", "-3.5", "-$3.50"},
        {"en_US", "-0.001", "-$0.00"},
        {"en_US@currency=JPY", "3.5", "¥3.5"},
        {"en_US@currency=JPY", "8", "¥8"},
        {"en_US@currency=KWD", "4.999166", "KWD\u00a04.99"},
        {"fr_FR@currency=USD", "1234567.891", "1\u202f234\u202f567,89\u00a0$US"},
        {"de_CH", "-1234567.891", "CHF-1’234’567.89"},
        {"he_IL", "1234567.891", "\u200f1,234,567.89\u00a0\u200f₪"},
        {"ar_EG", "1234567.891", "\u200f١٬٢٣٤٬٥٦٧٫٨٩\u00a0ج.م.\u200f"},
        {"en", "1234567.891", "¤1,234,567.89"},
        // What is unknown is written as the root writes it.
        {"root@currency=USD", "1234.5", "US$\u00a01,234.50"},
        {"xx_US", "1234.5", "US$\u00a01,234.50"},
        {"@currency=usd", "1234.5", "US$\u00a01,234.50"},
        {"not a locale at all", "1", "¤\u00a01.00"},
    };
    for (auto const& row : rows) EXPECT_EQ(format(priceFormatter(row.locale), row.number), row.text);
    EXPECT_EQ(priceFormatter("en_US").string(Decimal::notANumber()), "$NaN");
    EXPECT_EQ(format(formatterOf(Style::currency, "en@currency=KWD"), "4.999166"), "KWD\u00a04.999");
    EXPECT_EQ(format(formatterOf(Style::currency, "ja_JP"), "1200.4"), "￥1,200");
}

TEST(NumberFormatterTest, RoundsOnDecimalDigits) {
    struct {
        Mode mode;
        char const *up, *down, *tie, *nearTie, *nearWhole; // of the numbers below
    } const rows[] = {
        {Mode::ceiling, "1.3", "-1.2", "4.4", "2.1", "2.1"},
        {Mode::floor, "1.2", "-1.3", "4.3", "2.0", "2.0"},
        {Mode::down, "1.2", "-1.2", "4.3", "2.0", "2.0"},
        {Mode::up, "1.3", "-1.3", "4.4", "2.1", "2.1"},
        {Mode::halfEven, "1.2", "-1.2", "4.4", "2.1", "2.0"},
        {Mode::halfDown, "1.2", "-1.2", "4.3", "2.1", "2.0"},
        {Mode::halfUp, "1.3", "-1.3", "4.4", "2.1", "2.0"},
    };
    for (auto const& row : rows) {
        auto formatter = formatterOf(Style::decimal);
        formatter.setRoundingMode(row.mode);
        formatter.setMinimumFractionDigits(1);
        formatter.setMaximumFractionDigits(1);
        EXPECT_EQ(format(formatter, "1.25"), row.up);
        EXPECT_EQ(format(formatter, "-1.25"), row.down);
        EXPECT_EQ(format(formatter, "4.35"), row.tie);
        EXPECT_EQ(format(formatter, "2.0500000000000000000000000000000000001"), row.nearTie);
        EXPECT_EQ(format(formatter, "2.0000000000000000000000000000000000001"), row.nearWhole);
    }
}

TEST(NumberFormatterTest, EachStyleHasItsOwnText) {
    struct {
        Style style;
        char const *number, *text;
    } const rows[] = {
        {Style::none, "1234.5", "1234"},
        {Style::decimal, "1234.5", "1,234.5"},
        {Style::currency, "1234.5", "$1,234.50"},
        {Style::percent, "1234.5", "123,450%"},
        {Style::scientific, "1234.5", "1.2345E3"},
        {Style::spellOut, "42", "forty-two"},
        {Style::ordinal, "1234.5", "1,234th"},
        {Style::ordinal, "22", "22nd"},
        {Style::currencyISOCode, "1234.5", "USD\u00a01,234.50"},
        {Style::currencyPlural, "1234.5", "1,234.50 US dollars"},
        {Style::currencyAccounting, "-3.5", "($3.50)"},
        {static_cast<Style>(7), "3", "3"}, // unused: formats plainly
    };
    for (auto const& row : rows)
        EXPECT_EQ(format(formatterOf(row.style), row.number), row.text) << static_cast<int>(row.style);
}

TEST(NumberFormatterTest, AttributesSurviveChangesOfStyleAndLocale) {
    ScopedLanguages const languages{{"de-DE"}};
    NumberFormatter formatter;
    formatter.setNumberStyle(Style::decimal);
    EXPECT_EQ(format(formatter, "1234.5"), "1.234,5") << "the user's locale";
    formatter.setMaximumFractionDigits(1);
    formatter.setRoundingMode(Mode::up);
    formatter.setNumberStyle(Style::percent);
    EXPECT_EQ(format(formatter, "0.12341"), "12,4\u00a0%");
    formatter.setNumberStyle(Style::currency);
    EXPECT_EQ(format(formatter, "2.01"), "2,1\u00a0€");
    formatter.setLocale(Locale{"en_US"});
    EXPECT_EQ(format(formatter, "2.01"), "$2.1");
}

TEST(NumberFormatterTest, TheLastDigitLimitWins) {
    auto formatter = formatterOf(Style::decimal);
    formatter.setMaximumFractionDigits(1);
    formatter.setMinimumFractionDigits(4);
    EXPECT_EQ(format(formatter, "1.5"), "1.5000");
    formatter.setMaximumFractionDigits(2);
    EXPECT_EQ(format(formatter, "1.5"), "1.50");
    formatter.setMaximumFractionDigits(-3);
    EXPECT_EQ(format(formatter, "1.4"), "1");
    formatter.setMinimumFractionDigits(100000);
    EXPECT_EQ(format(formatter, "1"), "1." + std::string(340, '0'));

    formatter.setMinimumFractionDigits(0);
    EXPECT_EQ(format(formatter, "1234567890123456789012345678.9012345678"),
              "1,234,567,890,123,456,789,012,345,678.9012345678")
        << "no double holds so many digits";

    auto price = formatterOf(Style::currency, "en_US@currency=JPY");
    price.setMinimumFractionDigits(2);
    EXPECT_EQ(format(price, "3"), "¥3.00") << "a minimum above the currency's own digits raises the maximum";
}

} // namespace
} // namespace trelundo
