#include "trelundo/platform/foundation/internal/StringsTable.h"

#include <gmock/gmock.h>
#include <map>

namespace trelundo {
namespace {

using testing::Pair;

StringsTable parsed(std::string_view bytes) {
    auto table = StringsTable::parse(bytes, "file");
    EXPECT_TRUE(table) << table.error().message;
    return std::move(table).value_or({});
}

std::string value(std::string_view bytes, std::string_view key = "k") {
    auto const table = parsed(bytes);
    auto const* text = table.find(key);
    return text ? *text : "(missing)";
}

std::string utf16(std::u16string_view text, bool isBigEndian) {
    std::string bytes = isBigEndian ? "\xfe\xff" : "\xff\xfe";
    for (char16_t const unit : text) {
        char const high = static_cast<char>(unit >> 8), low = static_cast<char>(unit & 0xFF);
        bytes += isBigEndian ? high : low;
        bytes += isBigEndian ? low : high;
    }
    return bytes;
}

TEST(StringsTableTest, ReadsPairsCommentsAndFreeSpace) {
    auto const table =
        parsed("/* head; \"x\" = \"y\"; */ \"a\"=\"1\";\"b\"\n=\t\"2\"\r\n;// rest of the line \"z\n"
               "c_$/:.-9 = /path/to:x.y; 'single \"q\"' = 'it\"s'; \"alone\"; bare;\u2028\"d\"=\"\";");
    std::map<std::string, std::string> const pairs{table.entries().begin(), table.entries().end()};
    EXPECT_THAT(pairs, testing::ElementsAre(Pair("a", "1"), Pair("alone", "alone"), Pair("b", "2"),
                                            Pair("bare", "bare"), Pair("c_$/:.-9", "/path/to:x.y"),
                                            Pair("d", ""), Pair("single \"q\"", "it\"s")));
    EXPECT_EQ(parsed("").size(), 0U);
    EXPECT_EQ(parsed(" // only a comment").size(), 0U);
    EXPECT_EQ(value("k = first; k = second;"), "second");
    EXPECT_EQ(value("\"k\" = \"two\nlines /* kept */ // too\";"), "two\nlines /* kept */ // too");
}

TEST(StringsTableTest, ResolvesEscapes) {
    EXPECT_EQ(value(R"(k = "\a\b\f\n\r\t\v\"\\\'\q\é";)"), "\a\b\f\n\r\t\v\"\\'qé");
    EXPECT_EQ(value("k = \"one\\\ntwo\";"), "one\ntwo");
    EXPECT_EQ(value(R"(k = "\101\60\0609\9";)"), "A0099");
    EXPECT_EQ(value(R"(k = "\251\341\300\256\376";)"), "’Æ¹ﬁ\ufffd") << "the upper half is NextStep's";
    EXPECT_EQ(value(R"(k = "\U20ac\UE9z\U0041B\Uxyz\u20";)"), "€ézABUxyzu20");
    EXPECT_EQ(value(R"(k = "\UD83D\UDE00|\UD83D|\UD83D\U0041|\UDE00";)"), "😀|\ufffd|\ufffdA|\ufffd");
    EXPECT_EQ(value(R"(k = "a\0b";)"), (std::string{"a\0b", 3}));
}

TEST(StringsTableTest, ReadsEveryEncoding) {
    constexpr std::u16string_view text = u"\"k\" = \"Año 年 😀\";";
    EXPECT_EQ(value(utf16(text, true)), "Año 年 😀");
    EXPECT_EQ(value(utf16(text, false)), "Año 年 😀");
    EXPECT_EQ(value("\xef\xbb\xbf\"k\" = \"Año 年 😀\";"), "Año 年 😀");
    EXPECT_EQ(parsed(utf16(u"", true)).size(), 0U);
}

TEST(StringsTableTest, OneErrorFailsTheWholeTable) {
    struct {
        std::string bytes;
        char const* error;
    } const rows[] = {
        {"\"a\" = \"b\"", "1: expected \";\" after the entry \"a\""},
        {"\"a\" = \"b\";\n\n\"c\" \"d\";", "3: expected \";\" after the entry \"c\""},
        {"a = ;", "1: expected a value"},
        {"a =\r\n", "2: expected a value before the end of the file"},
        {"a = b;\n= c;", "2: expected a key"},
        {"a = b;\r\nc = d; }\r\n", "2: expected a key"},
        {"{ a = b; }", "1: expected a key"},
        {"a = b;\r\"c\n\n", "2: a quoted text without end"},
        {"a = 'b\\", "1: a quoted text without end"},
        {"\n/* never closed", "2: a comment without end"},
        {"a = b;\n\"c\" = \"\xff\";", "2: a byte that is not UTF-8"},
        {utf16(u"a\n\xd800", true), "2: an unpaired UTF-16 surrogate"},
        {utf16(u"a\n", true) + 'x', "2: the UTF-16 text ends inside a character"},
        {std::string{"a = b;\0", 7}, "1: expected a key"},
        {"<?xml version=\"1.0\"?>", "1: expected a key"},
    };
    for (auto const& row : rows) {
        auto const table = StringsTable::parse(row.bytes, "file");
        ASSERT_FALSE(table) << row.bytes;
        EXPECT_EQ(table.error().message, std::string{"file:"} + row.error) << row.bytes;
    }
}

} // namespace
} // namespace trelundo
