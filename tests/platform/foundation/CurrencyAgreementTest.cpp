#include "trelundo/platform/foundation/NumberFormatter.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>
#include <unicode/locid.h>
#include <unicode/numberformatter.h>
#include <unicode/ucurr.h>

// Price texts against a second way to the same text that shares nothing with the formatter: the quotient
// comes from long division of integers, it is cut to two digits by hand, and the library's number builder
// writes it.

namespace trelundo {
namespace {

__extension__ using Big = unsigned __int128;

/// `hundredths` / 100 / `divisor`, cut to two fraction digits.
std::string cutQuotient(std::uint64_t hundredths, unsigned divisor, int minimumFractionDigits) {
    Big const scaled = static_cast<Big>(hundredths) * 1'000'000 / divisor; // in hundred-millionths
    auto const cut = static_cast<std::uint64_t>(scaled / 1'000'000);
    auto fraction = std::to_string(100 + cut % 100).substr(1);
    while (fraction.size() > static_cast<std::size_t>(minimumFractionDigits) && fraction.ends_with('0'))
        fraction.pop_back();
    auto const whole = std::to_string(cut / 100);
    return fraction.empty() ? whole : whole + '.' + fraction;
}

std::string independentText(std::string const& locale, std::string const& currency, std::string const& digits,
                            int minimumFractionDigits) {
    UErrorCode status = U_ZERO_ERROR;
    icu::CurrencyUnit const unit{icu::StringPiece{currency}, status};
    auto const text = icu::number::NumberFormatter::withLocale(icu::Locale{locale.c_str()})
                          .unit(unit)
                          .grouping(UNUM_GROUPING_ON_ALIGNED) // four digits are grouped in every language
                          .precision(icu::number::Precision::minMaxFraction(minimumFractionDigits, 2))
                          .formatDecimal(digits, status)
                          .toString(status);
    EXPECT_TRUE(U_SUCCESS(status)) << locale << ' ' << currency << ' ' << u_errorName(status);
    std::string utf8;
    return text.toUTF8String(utf8);
}

int ownFractionDigits(std::string const& currency) {
    UErrorCode status = U_ZERO_ERROR;
    return ucurr_getDefaultFractionDigits(icu::UnicodeString::fromUTF8(currency).getTerminatedBuffer(),
                                          &status);
}

TEST(CurrencyAgreementTest, PricesAgreeWithAnIndependentFormatting) {
    constexpr std::uint64_t amounts[] = {0, 1, 99, 999, 5999, 120'000, 123'456'789};
    std::set<std::string> pairs;
    int mismatches = 0;
    std::size_t index = 0;
    int32_t count = 0;
    auto const* const locales = icu::Locale::getAvailableLocales(count);
    for (auto const* known = locales; known != locales + count; ++known) {
        if (*known->getCountry() == '\0' || *known->getVariant() != '\0') continue;
        std::string const locale = known->getName();
        // Every currency kind with every locale, but only one amount each: the amounts take turns.
        for (auto const& currency : {Locale{locale}.currencyCode(), std::string{"USD"}, std::string{"JPY"},
                                     std::string{"KWD"}, std::string{"EUR"}}) {
            auto const identifier = locale + "@currency=" + currency;
            if (!pairs.insert(identifier).second) continue;
            NumberFormatter formatter;
            formatter.setNumberStyle(NumberFormatter::Style::currency);
            formatter.setLocale(Locale{identifier});
            formatter.setRoundingMode(NumberFormatter::RoundingMode::down);
            formatter.setMaximumFractionDigits(2);
            auto const minimum = std::min(2, ownFractionDigits(currency));
            for (unsigned const divisor : {1U, 12U, 52U}) {
                auto const amount = amounts[index++ % std::size(amounts)];
                auto const quotient = Decimal{static_cast<std::int64_t>(amount)} / Decimal{100} /
                                      Decimal{static_cast<int>(divisor)};
                auto const expected =
                    independentText(identifier, currency, cutQuotient(amount, divisor, minimum), minimum);
                auto const actual = formatter.string(quotient).value_or("(none)");
                if (actual == expected) continue;
                if (++mismatches <= 20)
                    ADD_FAILURE() << identifier << ": " << actual << " is not " << expected;
            }
        }
    }
    EXPECT_EQ(mismatches, 0);
    EXPECT_GE(pairs.size(), 200U);
}

} // namespace
} // namespace trelundo
