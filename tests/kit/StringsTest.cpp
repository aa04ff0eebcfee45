#include "trelundo/kit/common/Texts.h"
#include "trelundo/platform/foundation/internal/StringsTable.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace trelundo {
namespace {

constexpr char const* languages[] = {"en", "de", "fr", "es", "ja", "ar", "he"};

/// The kit's table in one language, read from the bundle as the screens would.
StringsTable kitTable(std::string const& language) {
    auto const bytes = Texts::kitBundle().data(language + ".lproj/Premium.strings");
    EXPECT_TRUE(bytes) << language;
    auto table = StringsTable::parse(bytes.value_or(""), language);
    EXPECT_TRUE(table) << table.error().message;
    return std::move(table).value_or({});
}

int occurrences(std::string_view text, std::string_view part) {
    int count = 0;
    for (auto found = text.find(part); found != std::string_view::npos;
         found = text.find(part, found + part.size()))
        ++count;
    return count;
}

class KitStringsTest : public testing::TestWithParam<char const*> {
protected:
    StringsTable const english = kitTable("en");
    StringsTable const table = kitTable(GetParam());
};

TEST_P(KitStringsTest, HasEveryKeyWithItsPlaceholders) {
    EXPECT_GE(english.size(), 70U);
    for (auto const& [key, text] : english.entries()) EXPECT_TRUE(table.find(key)) << key;
    for (auto const& [key, text] : table.entries()) {
        EXPECT_TRUE(english.find(key)) << key;
        EXPECT_FALSE(text.empty()) << key;
        // Counted as the algorithms find them: together and, for the percent sign that stays, one by one.
        for (auto const* kept : {"$$$", "%%%%", "%%%", "@@@", "$", "%", "@", "\n", "Darno"})
            EXPECT_EQ(occurrences(text, kept), occurrences(key, kept)) << key << ": " << text;
    }
}

TEST_P(KitStringsTest, PeriodsHoldTheDigitThatStandsForTheCount) {
    for (auto const* unit : {"day", "week", "month", "year"}) {
        auto const singular = "1 " + std::string{unit};
        auto const plural = "2 " + std::string{unit} + 's';
        ASSERT_TRUE(table.find(singular) && table.find(plural)) << unit;
        EXPECT_EQ(occurrences(*table.find(singular), "2"), 0) << "the count is put in its place also here";
        EXPECT_EQ(occurrences(*table.find(plural), "2"), 1) << *table.find(plural);
    }
    EXPECT_EQ(occurrences(*table.find("12 months"), "12"), 1);
    EXPECT_EQ(occurrences(*table.find("7 days"), "7"), 1);
}

INSTANTIATE_TEST_SUITE_P(Languages, KitStringsTest, testing::ValuesIn(languages),
                         [](auto const& language) { return std::string{language.param}; });

TEST(KitStringTablesTest, EnglishTextsAreTheirKeys) {
    auto const english = kitTable("en");
    for (auto const& [key, text] : english.entries()) EXPECT_EQ(text, key);
    for (auto const* spelledOddly :
         {"Please try again. If the problem presists, let us know and we'll get right on it.",
          "You’ve run out of free saves", "Total:\n$$$"})
        EXPECT_TRUE(english.find(spelledOddly)) << spelledOddly;
}

TEST(KitStringTablesTest, ThereIsOneForEachLocalization) {
    auto localizations = Texts::kitBundle().localizations();
    std::vector<std::string> expected{std::begin(languages), std::end(languages)};
    std::ranges::sort(expected);
    EXPECT_EQ(localizations, expected);
}

} // namespace
} // namespace trelundo
