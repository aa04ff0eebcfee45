#include "trelundo/kit/common/Texts.h"
#include "trelundo/platform/foundation/internal/StringsTable.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <string_view>

namespace trelundo {
namespace {

/// One of the kit's tables in one language, read from the bundle as the screens would.
StringsTable kitTable(std::string const& name, std::string const& language) {
    auto const bytes = Texts::kitBundle().data(language + ".lproj/" + name + ".strings");
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

/// Counted as the algorithms find them: together and, for the percent sign that stays, one by one. That sign
/// may stand apart from its number, and on either side of it.
void expectPlaceholders(std::string_view key, std::string_view text) {
    auto const* number = key == "Save %%% per year" ? "%%" : "%%%";
    for (auto const* kept : {"$$$", number, "@@@", "$", "%", "@", "\n", "Darno", "Quivera Premium"})
        EXPECT_EQ(occurrences(text, kept), occurrences(key, kept)) << key << ": " << text;
}

class KitStringsTest : public testing::TestWithParam<std::string> {};

TEST_P(KitStringsTest, HasEveryKeyWithItsPlaceholders) {
    for (auto const* name : {"Premium", "Spoken"}) {
        auto const english = kitTable(name, "en");
        auto const table = kitTable(name, GetParam());
        for (auto const& [key, text] : english.entries()) EXPECT_TRUE(table.find(key)) << key;
        for (auto const& [key, text] : table.entries()) {
            EXPECT_TRUE(english.find(key)) << key;
            EXPECT_FALSE(text.empty()) << key;
            expectPlaceholders(key, text);
        }
    }
}

TEST_P(KitStringsTest, PeriodsHoldTheDigitThatStandsForTheCount) {
    auto const table = kitTable("Premium", GetParam());
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

INSTANTIATE_TEST_SUITE_P(Languages, KitStringsTest, testing::ValuesIn(Texts::kitBundle().localizations()),
                         [](auto const& language) {
                             auto name = language.param;
                             std::ranges::replace(name, '-', '_');
                             return name;
                         });

TEST(KitStringTablesTest, EnglishTextsAreTheirKeys) {
    for (auto const* name : {"Premium", "Spoken"}) {
        auto const english = kitTable(name, "en");
        ASSERT_GT(english.size(), 0U);
        for (auto const& [key, text] : english.entries()) EXPECT_EQ(text, key);
    }
    for (auto const* spelledOddly :
         {"Please try again. If the problem presists, let us know and we'll get right on it.",
          "You’ve run out of free saves", "Total:\n$$$"})
        EXPECT_TRUE(kitTable("Premium", "en").find(spelledOddly)) << spelledOddly;
}

} // namespace
} // namespace trelundo
