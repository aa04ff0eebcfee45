#include "platform/foundation/NumberFormatter.h"

#include "tests/platform/foundation/ScopedState.h"

#include <gtest/gtest.h>

namespace trelundo {
namespace {

using Style = NumberFormatter::Style;
using Mode = NumberFormatter::RoundingMode;

Decimal decimal(std::string_view text) { return Decimal::parse(text).value(); }

std::string format(NumberFormatter const& formatter, std::string_view number) {
    return formatter.string(decimal(number)).value_or("(none)");
}

NumberFormatter priceFormatter(std::string_view locale, Mode mode = Mode::down) {
    NumberFormatter formatter;
    formatter.setNumberStyle(Style::currency);
    formatter.setLocale(Locale{locale});
    formatter.setRoundingMode(mode);
    formatter.setMaximumFractionDigits(2);
    return formatter;
}

NumberFormatter formatterOf(Style style, std::string_view locale = "en_US") {
    NumberFormatter formatter;
    formatter.setLocale(Locale{locale});
    formatter.setNumberStyle(style);
    return formatter;
}

TEST(NumberFormatter, PricesFollowTheDigitsOfTheirCurrency) {
    struct {
        char const *locale, *divided, *whole, *large, *half, *zero;
    } const rows[] = {
        {"en_US", "$4.99", "$8.00", "$1,200.00", "$3.50", "$0.00"},
        {"en_US@currency=JPY", "¥4.99", "¥8", "¥1,200", "¥3.5", "¥0"},
        {"en_US@currency=KRW", "₩4.99", "₩8", "₩1,200", "₩3.5", "₩0"},
        {"en_US@currency=KWD", "KWD\u00a04.99", "KWD\u00a08.00", "KWD\u00a01,200.00", "KWD\u00a03.50",
         "KWD\u00a00.00"},
    };
    for (auto const& row : rows) {
        auto const formatter = priceFormatter(row.locale);
        EXPECT_EQ(format(formatter, "4.999166"), row.divided);
        EXPECT_EQ(format(formatter, "8"), row.whole);
        EXPECT_EQ(format(formatter, "1200"), row.large);
        EXPECT_EQ(format(formatter, "3.5"), row.half);
        EXPECT_EQ(format(formatter, "0"), row.zero);
    }
    EXPECT_EQ(
        format(formatterOf(Style::currency, "ar_KW@currency=KWD;numbers=latn"), "4.999166").find("4.999") !=
            std::string::npos,
        true)
        << "the dinar has three digits of its own";
    EXPECT_EQ(format(formatterOf(Style::currency, "ja_JP"), "1200.4"), "￥1,200");
}

TEST(NumberFormatter, EveryLocaleHasItsOwnPattern) {
    struct {
        char const *locale, *text;
    } const rows[] = {
        {"en_US", "$1,234,567.89"},
        {"en_GB", "£1,234,567.89"},
        {"hi_IN", "₹12,34,567.89"},
        {"fr_CA", "1\u00a0234\u00a0567,89\u00a0$"},
        {"en_US@currency=EUR", "€1,234,567.89"},
        {"en_GB@currency=USD", "US$1,234,567.89"},
        {"fr_FR@currency=USD", "1\u202f234\u202f567,89\u00a0$US"},
        {"en_US@currency=TWD", "NT$1,234,567.89"},
        {"zh_CN", "¥1,234,567.89"},
        {"de_DE", "1.234.567,89\u00a0€"},
        {"fr_FR", "1\u202f234\u202f567,89\u00a0€"},
        {"nl_NL", "€\u00a01.234.567,89"},
        {"de_CH", "CHF\u00a01’234’567.89"},
        {"pt_BR", "R$\u00a01.234.567,89"},
        {"ru_RU", "1\u00a0234\u00a0567,89\u00a0₽"},
        {"tr_TR", "₺1.234.567,89"},
        {"he_IL", "\u200f1,234,567.89\u00a0\u200f₪"},
        {"ar_EG", "\u200f١٬٢٣٤٬٥٦٧٫٨٩\u00a0ج.م.\u200f"},
        {"ar_AE", "\u200f1,234,567.89\u00a0د.إ.\u200f"},
        {"vi_VN", "1.234.567,89\u00a0₫"},
        {"id_ID", "Rp\u00a01.234.567,89"},
        {"en", "¤1,234,567.89"},
    };
    for (auto const& row : rows)
        EXPECT_EQ(format(priceFormatter(row.locale), "1234567.891"), row.text) << row.locale;
}

TEST(NumberFormatter, UnknownLocalesBehaveLikeTheRoot) {
    auto const root = format(priceFormatter("root@currency=USD"), "1234.5");
    EXPECT_EQ(root, "US$\u00a01,234.50");
    for (auto const* locale : {"xx_US", "qqq@currency=USD", "_US", "@currency=usd"})
        EXPECT_EQ(format(priceFormatter(locale), "1234.5"), root) << locale;
    EXPECT_EQ(format(priceFormatter("not a locale at all"), "1"), format(priceFormatter(""), "1"));
}

TEST(NumberFormatter, NegativeAmountsZerosAndNaNHaveTheirTexts) {
    EXPECT_EQ(format(priceFormatter("en_US"), "-3.5"), "-$3.50");
    EXPECT_EQ(format(priceFormatter("en_US"), "-0.001"), "-$0.00");
    EXPECT_EQ(format(priceFormatter("en_US"), "0"), "$0.00");
    EXPECT_EQ(format(priceFormatter("nl_NL"), "-3.5"), "€\u00a0-3,50");
    EXPECT_EQ(format(priceFormatter("de_CH"), "-3.5"), "CHF-3.50");
    EXPECT_EQ(format(priceFormatter("sv_SE"), "-3.5"), "\u22123,50\u00a0kr");
    EXPECT_EQ(priceFormatter("en_US").string(Decimal::notANumber()), "$NaN");
}

TEST(NumberFormatter, RoundsOnDecimalDigits) {
    struct {
        Mode mode;
        char const *up, *down, *tie, *nearTie, *nearWhole;
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

TEST(NumberFormatter, KeepsDigitsThatNoDoubleHolds) {
    auto formatter = formatterOf(Style::decimal);
    formatter.setMaximumFractionDigits(40);
    EXPECT_EQ(format(formatter, "1234567890123456789012345678.9012345678"),
              "1,234,567,890,123,456,789,012,345,678.9012345678");
    EXPECT_EQ(format(priceFormatter("en_US"), "99999999999999999999999999.999"),
              "$99,999,999,999,999,999,999,999,999.99");
}

TEST(NumberFormatter, EachStyleHasItsOwnText) {
    struct {
        Style style;
        char const* text;
    } const rows[] = {
        {Style::none, "1234"},
        {Style::decimal, "1,234.5"},
        {Style::currency, "$1,234.50"},
        {Style::percent, "123,450%"},
        {Style::scientific, "1.2345E3"},
        {Style::ordinal, "1,234th"},
        {Style::currencyISOCode, "USD\u00a01,234.50"},
        {Style::currencyPlural, "1,234.50 US dollars"},
        {Style::currencyAccounting, "$1,234.50"},
    };
    for (auto const& row : rows)
        EXPECT_EQ(format(formatterOf(row.style), "1234.5"), row.text) << static_cast<int>(row.style);
    EXPECT_EQ(format(formatterOf(Style::currencyAccounting), "-3.5"), "($3.50)");
    EXPECT_EQ(format(formatterOf(Style::spellOut), "42"), "forty-two");
    EXPECT_EQ(format(formatterOf(Style::ordinal), "22"), "22nd");
    EXPECT_EQ(format(formatterOf(Style::none), "0.2"), "0");
    EXPECT_EQ(format(formatterOf(static_cast<Style>(7)), "3"), "3") << "the unused value formats plainly";
}

TEST(NumberFormatter, AttributesSurviveChangesOfStyleAndLocale) {
    NumberFormatter formatter;
    formatter.setMaximumFractionDigits(1);
    formatter.setRoundingMode(Mode::up);
    formatter.setLocale(Locale{"de_DE"});
    formatter.setNumberStyle(Style::percent);
    EXPECT_EQ(format(formatter, "0.12341"), "12,4\u00a0%");
    formatter.setNumberStyle(Style::currency);
    EXPECT_EQ(format(formatter, "2.01"), "2,1\u00a0€");
    formatter.setLocale(Locale{"en_US"});
    EXPECT_EQ(format(formatter, "2.01"), "$2.1");
}

TEST(NumberFormatter, TheLastDigitLimitWins) {
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

    auto price = formatterOf(Style::currency, "en_US@currency=JPY");
    price.setMinimumFractionDigits(2);
    EXPECT_EQ(format(price, "3"), "¥3.00") << "a minimum above the currency's own digits raises the maximum";
}

TEST(NumberFormatter, DefaultsToTheUsersLocaleAndHalfEven) {
    ScopedLanguages const languages{{"de-DE"}};
    NumberFormatter formatter;
    EXPECT_EQ(formatter.numberStyle(), Style::none);
    EXPECT_EQ(formatter.roundingMode(), Mode::halfEven);
    formatter.setNumberStyle(Style::decimal);
    EXPECT_EQ(format(formatter, "1234.5"), "1.234,5");
}

} // namespace
} // namespace trelundo
