#include "tests/platform/graphics/Drawing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <utility>

namespace trelundo {

using namespace test;

namespace {

std::unique_ptr<Surface> sheet(std::vector<TextRun> const& runs, TextLimits const& limits = {},
                               double width = 200) {
    TextLayout const text(runs, limits);
    return drawn(static_cast<int>(width), 60, 2, [&](Canvas& canvas) { text.draw(canvas, {0, 0}, width); });
}

/// The columns, in pixels, between which anything is drawn.
struct Extent {
    int left;
    int right;
};
Extent inkColumns(Surface const& surface) {
    Extent extent{surface.pixelWidth(), -1};
    for (int y = 0; y < surface.pixelHeight(); ++y)
        for (int x = 0; x < surface.pixelWidth(); ++x)
            if (alphaAt(surface, x, y) > 0) extent = {std::min(extent.left, x), std::max(extent.right, x)};
    return extent;
}

Extent ink(TextRun const& text, TextLimits const& limits = {}) { return inkColumns(*sheet({text}, limits)); }

int countOf(Surface const& surface, std::uint32_t pixel) {
    int count = 0;
    for (int y = 0; y < surface.pixelHeight(); ++y)
        for (int x = 0; x < surface.pixelWidth(); ++x) count += surface.pixel(x, y) == pixel ? 1 : 0;
    return count;
}

TextRun underlined(std::string text) {
    auto result = run(std::move(text));
    result.underline = NSUnderlineStyle::single;
    result.underlineColor = red;
    return result;
}

/// The pixels of its red lines, and of a line as long as the text is, one pixel thick.
int lineOf(TextRun const& text) { return countOf(*sheet({text}), 0xffff0000); }
double lengthOf(TextRun const& text) { return TextLayout({text}, {}).size().width * 2; }

bool isColored(Surface const& surface) {
    std::set<std::uint32_t> hues;
    for (int y = 0; y < surface.pixelHeight(); ++y)
        for (int x = 0; x < surface.pixelWidth(); ++x)
            if (alphaAt(surface, x, y) == 255) hues.insert(surface.pixel(x, y));
    return hues.size() > 20;
}

} // namespace

TEST(TextDrawingTest, AlignmentIsPhysicalOrFollowsTheFirstStrongCharacter) {
    using Alignment = NSTextAlignment;
    struct Row {
        char const* text;
        Alignment alignment;
        bool isRightToLeft; // the surroundings, which decide without a strong character
        double middle;      // of the ink, in parts of the free width
    };
    for (auto const& [text, alignment, isRightToLeft, middle] :
         {Row{"abc", Alignment::natural, false, 0}, Row{"abc", Alignment::natural, true, 0},
          Row{"שלום", Alignment::natural, false, 1}, Row{"123 مرحبا", Alignment::natural, false, 1},
          Row{"123", Alignment::natural, false, 0}, Row{"123", Alignment::natural, true, 1},
          Row{"שלום", Alignment::left, false, 0}, Row{"abc", Alignment::right, false, 1},
          Row{"abc", Alignment::center, false, 0.5}}) {
        auto aligned = run(text);
        aligned.paragraph.alignment = alignment;
        auto const [left, right] = ink(aligned, {.isRightToLeft = isRightToLeft});
        EXPECT_NEAR(left / (399.0 - (right - left)), middle, 0.03) << text;
    }
    auto latin = run("abc");
    latin.paragraph.baseWritingDirection = NSWritingDirection::rightToLeft;
    EXPECT_GT(ink(latin).right, 380);
}

TEST(TextDrawingTest, JustifiedLinesFillTheWidthButForTheLast) {
    auto text = run("aaa bbb cc dddddddddd ee", 16);
    text.paragraph.alignment = NSTextAlignment::justified;
    auto const surface = sheet({text}, {.width = 100}, 100);
    EXPECT_GE(inkColumns(*surface).right, 194);
    auto plain = text;
    plain.paragraph.alignment = NSTextAlignment::left;
    EXPECT_LT(inkColumns(*sheet({plain}, {.width = 100}, 100)).right, 194);
}

TEST(TextDrawingTest, EmojiSequencesAreOneColoredPicture) {
    auto const single = TextLayout({run("👍")}, {}).size().width;
    for (auto const* text :
         {"👍🏽", "👨‍👩‍👧‍👦", "🇩🇪", "❤️", "1️⃣", "🏳️‍🌈"}) {
        EXPECT_NEAR(TextLayout({run(text)}, {}).size().width, single, 0.5) << text;
        EXPECT_GT(ink(run(text)).right, 20) << text;
    }
    EXPECT_TRUE(isColored(*sheet({run("👍🏽")})));
    EXPECT_TRUE(isColored(*sheet({run("1️⃣")})));
}

TEST(TextDrawingTest, EveryScriptIsDrawnWithAGlyph) {
    // What no font has looks alike; different texts of one length must not.
    using Pair = std::pair<char const*, char const*>;
    for (auto const& [first, second] : {Pair{"無", "料"}, Pair{"م", "ح"}, Pair{"ש", "ל"}, Pair{"ก", "ข"},
                                        Pair{"한", "국"}, Pair{"अ", "क"}, Pair{"★", "☎"}, Pair{"∞", "∑"}})
        EXPECT_FALSE(sameBytes(*sheet({run(first)}), *sheet({run(second)}))) << first;
}

TEST(TextDrawingTest, UnderlinesAreWholePixelsInTheirColor) {
    auto text = underlined("nnn");
    auto const surface = sheet({text});
    auto const length = lengthOf(text);
    // 20 points at 2 pixels: two pixels thick.
    EXPECT_NEAR(lineOf(text), 2 * length, 4);
    auto const baseline = static_cast<int>(text.font.ascender() * 2);
    int row = 0;
    while (row < surface->pixelHeight() && surface->pixel(4, row) != 0xffff0000) ++row;
    EXPECT_GT(row, baseline);
    EXPECT_LT(row, baseline + 10);
    text.underline = NSUnderlineStyle::doubleLine;
    EXPECT_NEAR(lineOf(text), 4 * length, 8);
    text.underline = static_cast<NSUnderlineStyle>(0x101);
    EXPECT_NEAR(lineOf(text), length, 8);
    auto words = underlined("a b");
    auto const whole = lineOf(words);
    words.underline = static_cast<NSUnderlineStyle>(0x8001); // by word
    EXPECT_LT(lineOf(words), whole - 4);
}

TEST(TextDrawingTest, UnderlinesKeepClearOfWhatReachesBelow) {
    for (auto const* word : {"gypsy", "بيتي", "qué jaja"}) {
        auto const text = underlined(word);
        auto const surface = sheet({text});
        auto const isLine = [&](int x, int y) { return surface->pixel(x, y) == 0xffff0000; };
        for (int y = 0; y < surface->pixelHeight(); ++y)
            for (int x = 1; x + 1 < surface->pixelWidth(); ++x) {
                if (!isLine(x, y)) continue;
                for (int const beside : {x - 1, x + 1})
                    EXPECT_TRUE(isLine(beside, y) || alphaAt(*surface, beside, y) == 0) << word << " " << x;
            }
        EXPECT_GT(lineOf(text), 0) << word;
        EXPECT_LT(lineOf(text), 2 * lengthOf(text) - 8) << word;
    }
    auto const eastAsian = underlined("購入済みの方");
    EXPECT_NEAR(lineOf(eastAsian), 2 * lengthOf(eastAsian), 8) << "the line stands whole below it";
}

TEST(TextDrawingTest, StrikethroughLiesOverTheText) {
    auto text = run("xxx");
    text.strikethrough = NSUnderlineStyle::single;
    text.strikethroughColor = green;
    auto const surface = sheet({text});
    EXPECT_NEAR(countOf(*surface, 0xff00ff00), 2 * lengthOf(text), 4);
    auto const middle = static_cast<int>((text.font.ascender() - text.font.xHeight() / 2) * 2);
    EXPECT_EQ(surface->pixel(10, middle), 0xff00ff00);
}

TEST(TextDrawingTest, BaselineOffsetRaisesAndBackgroundFills) {
    auto raised = run("n");
    raised.baselineOffset = 5;
    EXPECT_NEAR(TextLayout({raised}, {}).firstBaseline(), raised.font.ascender() + 5, 1e-9);
    EXPECT_TRUE(sameBytes(*sheet({raised}), *sheet({run("n")}))) << "higher in a line that is higher";
    auto marked = run("n");
    marked.background = red;
    EXPECT_GT(countOf(*sheet({marked}), 0xffff0000), 200);
}

} // namespace trelundo
