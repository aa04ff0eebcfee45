#include "trelundo/platform/foundation/Strings.h"

#include "tests/support/ScopedState.h"
#include "trelundo/platform/foundation/internal/Utf8.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace trelundo {
namespace {

using namespace test;

TEST(StringsTest, ReplacesFromTheLeftWithoutRescanning) {
    struct {
        std::string text, target, replacement, result;
    } const rows[] = {
        {"a %%% b", "%%", "50%", "a 50%% b"},
        {"aaaaa", "aa", "a", "aaa"},
        {"2 days, 2 weeks", "2", "22", "22 days, 22 weeks"},
        {"text", "", "x", "text"},
        {"", "x", "y", ""},
        {"x", "longer than x", "y", "x"},
        // By canonical equivalence, which compatibility is not: composed letters, marks in another order, a
        // Hangul syllable and its letters. No letter is torn from its mark.
        {"caf\u00e9 bar", "cafe\u0301", "tea", "tea bar"},
        {"cafe\u0301 bar", "caf\u00e9", "tea", "tea bar"},
        {"q\u0307\u0323!", "q\u0323\u0307", "k", "k!"},
        {"\uac00!", "\u1100\u1161", "x", "x!"},
        {"caf\u00e9", "e", "x", "caf\u00e9"},
        {"cafe\u0301", "e", "x", "cafe\u0301"},
        {"ﬁ", "fi", "x", "ﬁ"},
        // Bytes that are not UTF-8 stay.
        {"\xff%%\xc3", "%%", "5!", "\xff\x35!\xc3"},
        {"\xe2\x82 a\u0301", "\u00e1", "x", "\xe2\x82 x"},
        {{"a\0b", 3}, {"\0", 1}, "-", "a-b"},
    };
    for (auto const& row : rows)
        EXPECT_EQ(replacingOccurrences(row.text, row.target, row.replacement), row.result) << row.text;
    EXPECT_EQ(replacingFirstOccurrence("$$$ then $$$", "$$$", "€5"), "€5 then $$$");
    EXPECT_EQ(replacingFirstOccurrence("nach 2 Tagen für 2 €", "2", "7"), "nach 7 Tagen für 2 €");
}

TEST(StringsTest, SplitOmitsEmptyPieces) {
    EXPECT_THAT(split("a  b", ' '), testing::ElementsAre("a", "b"));
    EXPECT_THAT(split(" é ", ' '), testing::ElementsAre("é"));
    EXPECT_THAT(split("   ", ' '), testing::IsEmpty());
}

TEST(StringsTest, CapitalizesCharacterByCharacterByTheRulesOfTheLanguage) {
    struct {
        char const *language, *text, *title;
    } const rows[] = {
        {"en_US", "7-day FREE trial 2nd 3d", "7-Day Free Trial 2Nd 3D"},
        {"en_US", "o'neil l’année a.b c:d e·f", "O'neil L’année A.b C:d E·f"},
        {"en_US", "so\u00adft e\u0301t\u00e9", "So\u00adft E\u0301t\u00e9"},
        {"en_US", "ßx ﬁn ǆ", "Ssx Fin ǅ"},
        {"en_US", "ΟΔΟΣ ΑΣ.", "Οδος Ας."},
        {"en_US", "2 か月 שבוע شهر", "2 か月 שבוע شهر"},
        {"en_US", "a\xff", "A\ufffd"},
        {"en_US", "", ""},
        {"tr_TR", "istanbul ILIK DI\u0307", "İstanbul Ilık Di"},
        {"az", "ib I", "İb I"},
        {"nl", "ijs IJS bijna", "IJs IJs Bijna"},
        {"lt", "i\u0307x XJ\u0301", "Ix Xj\u0307\u0301"},
        {"", "istanbul ijs", "Istanbul Ijs"},
    };
    for (auto const& row : rows) EXPECT_EQ(capitalized(row.text, Locale{row.language}), row.title);
    ScopedLanguages const scope{{"tr-TR"}};
    EXPECT_EQ(localizedCapitalized("iki"), "İki");
}

TEST(Utf8Test, DecodesOnlyWhatIsWellFormed) {
    for (std::string const bad :
         {"\x80", "\xc0\x80", "\xc1\xbf", "\xe0\x80\x80", "\xed\xa0\x80", "\xf0\x80\x80\x80",
          "\xf4\x90\x80\x80", "\xf8\x88\x80\x80\x80", "\xe2\x82", "\xff", "\xc3("}) {
        std::size_t position = 0;
        EXPECT_FALSE(takeCodePoint(bad, position));
        EXPECT_EQ(position, 1U);
    }
    for (char32_t const codePoint :
         {U'\0', U'\x7f', U'\x80', U'\u07ff', U'\u0800', U'\uffff', U'\U00010000', U'\U0010ffff'}) {
        std::string text;
        appendCodePoint(text, codePoint);
        std::size_t position = 0;
        EXPECT_EQ(takeCodePoint(text, position), codePoint);
        EXPECT_EQ(position, text.size());
    }
}

} // namespace
} // namespace trelundo
