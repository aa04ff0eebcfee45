#include "platform/foundation/Strings.h"

#include "platform/foundation/Utf8.h"
#include "tests/platform/foundation/ScopedState.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace trelundo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Strings, ReplacesFromTheLeftWithoutRescanning) {
    EXPECT_EQ(replacingOccurrences("a %%% b", "%%", "50%"), "a 50%% b");
    EXPECT_EQ(replacingOccurrences("a %%% b", "%%%", "50%"), "a 50% b");
    EXPECT_EQ(replacingOccurrences("aaaaa", "aa", "a"), "aaa");
    EXPECT_EQ(replacingOccurrences("2 days, 2 weeks", "2", "22"), "22 days, 22 weeks");
    EXPECT_EQ(replacingOccurrences("text", "", "x"), "text");
    EXPECT_EQ(replacingOccurrences("", "x", "y"), "");
    EXPECT_EQ(replacingOccurrences("x", "longer than x", "y"), "x");
    EXPECT_EQ(replacingFirstOccurrence("$$$ then $$$", "$$$", "€5"), "€5 then $$$");
    EXPECT_EQ(replacingFirstOccurrence("nach 2 Tagen für 2 €", "2", "7"), "nach 7 Tagen für 2 €");
    EXPECT_EQ(replacingOccurrences("لمدة 2 شهر", "2", "3"), "لمدة 3 شهر");
}

TEST(Strings, MatchesByCanonicalEquivalence) {
    std::string const composed = "caf\u00e9", decomposed = "cafe\u0301";
    EXPECT_EQ(replacingOccurrences(composed + " bar", decomposed, "tea"), "tea bar");
    EXPECT_EQ(replacingOccurrences(decomposed + " bar", composed, "tea"), "tea bar");
    EXPECT_EQ(replacingOccurrences("q\u0307\u0323!", "q\u0323\u0307", "k"), "k!") << "marks in another order";
    EXPECT_EQ(replacingOccurrences("\uac00!", "\u1100\u1161", "x"), "x!")
        << "a Hangul syllable and its letters";
    EXPECT_EQ(replacingOccurrences("\u212b", "\u00c5", "x"), "x");
    EXPECT_EQ(replacingOccurrences(composed, "e", "x"), composed);
    EXPECT_EQ(replacingOccurrences(decomposed, "e", "x"), decomposed) << "a letter is not torn from its mark";
    EXPECT_EQ(replacingOccurrences("ﬁ", "fi", "x"), "ﬁ") << "compatibility is not equivalence";
}

TEST(Strings, KeepsBytesThatAreNotUtf8) {
    EXPECT_EQ(replacingOccurrences("\xff%%\xc3", "%%", "5"), "\xff"
                                                             "5\xc3");
    EXPECT_EQ(replacingOccurrences("\xe2\x82 a\u0301", "\u00e1", "x"), "\xe2\x82 x");
    std::string const withNul{"a\0b", 3};
    EXPECT_EQ(replacingOccurrences(withNul, std::string_view{"\0", 1}, "-"), "a-b");
}

TEST(Strings, SplitOmitsEmptyPieces) {
    EXPECT_THAT(split("a  b", ' '), ElementsAre("a", "b"));
    EXPECT_THAT(split(" é ", ' '), ElementsAre("é"));
    EXPECT_THAT(split("", ' '), IsEmpty());
    EXPECT_THAT(split("   ", ' '), IsEmpty());
}

TEST(Strings, CapitalizesCharacterByCharacter) {
    struct {
        char const *text, *title;
    } const rows[] = {
        {"1 week", "1 Week"},
        {"12 months", "12 Months"},
        {"7-day FREE trial", "7-Day Free Trial"},
        {"2nd 3d", "2Nd 3D"},
        {"o'neil l’année a.b c:d e·f", "O'neil L’année A.b C:d E·f"},
        {"so\u00adft e\u0301t\u00e9", "So\u00adft E\u0301t\u00e9"},
        {"3 месяца", "3 Месяца"},
        {"ßx ﬁn ǆ", "Ssx Fin ǅ"},
        {"ΟΔΟΣ ΑΣ.", "Οδος Ας."},
        {"2 か月 שבוע شهر", "2 か月 שבוע شهر"},
        {"a\xff", "A\ufffd"},
        {"", ""},
    };
    for (auto const& [text, title] : rows) EXPECT_EQ(capitalized(text, Locale{"en_US"}), title);
}

TEST(Strings, CapitalizesByTheRulesOfTheLanguage) {
    EXPECT_EQ(capitalized("istanbul ILIK", Locale{"tr_TR"}), "İstanbul Ilık");
    EXPECT_EQ(capitalized("ib", Locale{"az"}), "İb");
    EXPECT_EQ(capitalized("DI\u0307", Locale{"tr"}), "Di");
    EXPECT_EQ(capitalized("ijs IJS bijna", Locale{"nl"}), "IJs IJs Bijna");
    EXPECT_EQ(capitalized("ijs", Locale{"de"}), "Ijs");
    EXPECT_EQ(capitalized("i\u0307x", Locale{"lt"}), "Ix");
    EXPECT_EQ(capitalized("XJ\u0301", Locale{"lt"}), "Xj\u0307\u0301");
    EXPECT_EQ(capitalized("istanbul", Locale{""}), "Istanbul");
    ScopedLanguages const scope{{"tr-TR"}};
    EXPECT_EQ(localizedCapitalized("iki"), "İki");
}

TEST(Utf8, DecodesOnlyWhatIsWellFormed) {
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
