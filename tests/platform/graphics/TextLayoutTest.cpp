#include "tests/platform/graphics/Drawing.h"
#include "trelundo/platform/graphics/Geometry.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <string>

namespace trelundo {

using namespace test;

namespace {

TextLayout layout(std::string text, TextLimits const& limits = {}) {
    return {{run(std::move(text))}, limits};
}

double width(TextRun const& text) { return TextLayout({text}, {}).size().width; }
double width(std::string text) { return width(run(std::move(text))); }

TextLimits wrapping(double width, int lines = 0,
                    std::optional<NSLineBreakMode> mode = NSLineBreakMode::byTruncatingTail) {
    return {.width = width, .numberOfLines = lines, .lineBreakMode = mode};
}

} // namespace

TEST(TextLayoutTest, LinesHaveThePublishedHeightsInEveryFont) {
    struct Row {
        double size, atTwo, atThree;
    };
    constexpr std::array rows{Row{8, 10, 29.0 / 3},    Row{11, 13.5, 40.0 / 3}, Row{13, 16, 47.0 / 3},
                              Row{17, 20.5, 61.0 / 3}, Row{20, 24, 24},         Row{34, 41, 122.0 / 3},
                              Row{93, 111, 111}};
    for (auto const& row : rows) {
        auto const height = TextLayout({run("Ág", row.size, 900)}, {}).size().height;
        EXPECT_DOUBLE_EQ(ceilToPixel(height, 2), row.atTwo) << row.size;
        EXPECT_DOUBLE_EQ(ceilToPixel(height, 3), row.atThree) << row.size;
    }
    for (auto const* text : {"無料", "مرحبا", "שלום", "👍🏽", "ไทย", "हिन्दी"})
        EXPECT_DOUBLE_EQ(layout(text).size().height, layout("Hello").size().height) << text;
}

TEST(TextLayoutTest, KerningIsAddedAfterEveryCharacterButNotWithinJoinedWriting) {
    auto const added = [](std::string const& text, double kern) {
        auto kerned = run(text);
        kerned.kern = kern;
        return width(kerned) - width(text);
    };
    EXPECT_NEAR(added("Unlock", 2), 12, 1e-9);
    EXPECT_NEAR(added("Unlock", -0.5), -3, 1e-9);
    EXPECT_NEAR(added("👨‍👩‍👧‍👦é", 1), 2, 1e-9)
        << "two characters, however many code points";
    for (auto const* word : {"محدودة", "प्रीमियम"}) EXPECT_NEAR(added(word, -3), 0, 1e-9) << word;
    EXPECT_GT(added("AV", 0), 0) << "zero turns the font's own kerning off";
    EXPECT_NEAR(added("AV", 0), width("A") + width("V") - width("AV"), 1e-9);
}

TEST(TextLayoutTest, WidthsAddUpOverRunsAndScale) {
    auto const whole = TextLayout({run("Price "), run("now", 17, 700)}, {}).size().width;
    EXPECT_NEAR(whole, width("Price ") + width(run("now", 17, 700)), 1e-9);
    TextLimits half;
    half.fontScale = 0.5;
    auto spaced = run("abcd", 160);
    spaced.kern = 4;
    EXPECT_NEAR(TextLayout({spaced}, half).size().width * 2, width(spaced), 1e-9);
}

TEST(TextLayoutTest, WidthsFollowSizeAndWeight) {
    // Letters of 80 points have no tracking, so widths of the same text compare by it.
    auto const ems = [](double size) { return width(run("nnnnnnnnnn", size)) / size; };
    EXPECT_NEAR((ems(28) - ems(80)) * 100, 14, 1e-6);
    EXPECT_NEAR((ems(22) - ems(80)) * 100, -10, 1e-6) << "between 20 and 24";
    double last = 0;
    for (int const weight : {100, 300, 400, 500, 600, 700, 900}) {
        auto const current = width(run("Unlock everything", 17, weight));
        EXPECT_GT(current, last) << weight;
        last = current;
    }
    EXPECT_EQ(width(run("Unlock", 17, 650)), width(run("Unlock", 17, 600)))
        << "the lighter of the two nearest";
}

TEST(TextLayoutTest, EveryLineEndMakesALine) {
    EXPECT_EQ(layout("a\nb\rc\r\nd\u2028e\u2029f").lineCount(), 6);
    EXPECT_EQ(layout("\n").lineCount(), 2);
    EXPECT_EQ(layout("a\n").lineCount(), 2);
    EXPECT_EQ(layout("").lineCount(), 1);
    EXPECT_EQ(TextLayout({run("a\r"), run("\nb")}, {}).lineCount(), 3) << "a pair split over runs is two";
    EXPECT_NEAR(layout("\n").size().height, 2 * layout("x").size().height, 1e-9);
    EXPECT_FALSE(layout("a\nb").isWrapped());
    EXPECT_EQ(TextLayout({}, {}).lineCount(), 0);
}

TEST(TextLayoutTest, ParagraphStylesShapeTheLines) {
    auto text = run("a\nb\nc");
    auto const line = text.font.lineHeight();
    auto const height = [&](TextLimits const& limits = {}) {
        return TextLayout({text}, limits).size().height;
    };
    text.paragraph.lineSpacing = 10;
    EXPECT_NEAR(height(), 3 * line + 20, 1e-9) << "only between lines";
    EXPECT_NEAR(height({.fontScale = 0.5}), 1.5 * line + 10, 1e-9);
    text.text = "a";
    EXPECT_NEAR(height(), line, 1e-9);

    text = run("a\nb");
    text.paragraph.paragraphSpacing = 5;
    text.paragraph.minimumLineHeight = 40;
    EXPECT_NEAR(height(), 85, 1e-9);
    EXPECT_NEAR(TextLayout({text}, {}).firstBaseline(), 40 + text.font.descender(), 1e-9);
    text.paragraph.minimumLineHeight = 0;
    text.paragraph.firstLineHeadIndent = 30;
    EXPECT_NEAR(width(text), 30 + std::max(width("a"), width("b")), 1e-9);
}

TEST(TextLayoutTest, ALineIsAsHighAsItsTallestFont) {
    TextLayout const mixed({run("small "), run("BIG", 40), run("\nlast", 10)}, {});
    EXPECT_NEAR(mixed.firstBaseline(), FontSpec{.size = 40}.ascender(), 1e-9);
    EXPECT_NEAR(mixed.size().height, FontSpec{.size = 40}.lineHeight() + FontSpec{.size = 10}.lineHeight(),
                1e-9);
    EXPECT_NEAR(mixed.lastBaseline(), FontSpec{.size = 40}.lineHeight() + FontSpec{.size = 10}.ascender(),
                1e-9);
}

TEST(TextLayoutTest, WrapsBetweenWords) {
    auto const text = layout("Unlock everything today", wrapping(width("Unlock everything") + 0.01));
    EXPECT_EQ(text.lineCount(), 2);
    EXPECT_TRUE(text.isWrapped());
    EXPECT_FALSE(text.isTruncated());
    EXPECT_FALSE(text.breaksWord());
    // The space at the wrap does not count.
    EXPECT_NEAR(text.size().width, width("Unlock everything"), 1e-9);
    // A text fits into the width that was measured for it.
    EXPECT_EQ(layout("Unlock everything today", wrapping(width("Unlock everything today"))).lineCount(), 1);
}

TEST(TextLayoutTest, BreaksAWordThatDoesNotFit) {
    auto const text = layout("a Incomprehensibilities b", wrapping(60));
    EXPECT_TRUE(text.breaksWord());
    EXPECT_GT(text.lineCount(), 2);
    EXPECT_LE(text.size().width, 60);
    EXPECT_EQ(layout("abc", wrapping(0)).lineCount(), 3);
    EXPECT_EQ(layout("👨‍👩‍👧‍👦👍🏽", wrapping(0)).lineCount(), 2);
}

TEST(TextLayoutTest, BreaksWhereItLooksWell) {
    // The widest line tells where the text was broken.
    auto const widest = [](std::string text, double room) {
        auto const set = layout(std::move(text), wrapping(room));
        EXPECT_EQ(set.lineCount(), 2);
        return set.size().width;
    };
    // A short last word is kept company, but for a long one, a longer last line and another paragraph.
    EXPECT_NEAR(widest("Something is wrong", width("Something is") + 1), width("Something"), 1e-9);
    EXPECT_NEAR(widest("Something is unforeseen", width("Something is") + 1), width("Something is"), 1e-9);
    EXPECT_NEAR(widest("Something else is as it is", width("Something else is as") + 1),
                width("Something else is"), 1e-9);
    EXPECT_NEAR(widest("Some things vary", width("Some things") + 1), width("Some things"), 1e-9);
    EXPECT_EQ(widest("A longword\nis", width("A longword") + 1), width("A longword"));

    // An amount with its sign moves as one, were the last line the longer for it.
    EXPECT_NEAR(widest("Danach nur 29,99\u00a0€/Jahr fällig", width("Danach nur 29,99\u00a0€/Jahr") + 1),
                width("29,99\u00a0€/Jahr fällig"), 1e-9);

    // No full stop begins a line, and no word is left with its first character.
    EXPECT_NEAR(widest("期間限定。", width("期間限定") + 0.5), width("期間限"), 1e-9);
    EXPECT_NEAR(widest("問題が発生しました。", width("問題が発生しま")), width("問題が発生"), 1e-9);
    EXPECT_NEAR(widest("1年わずか$1.24/月", width("わずか$1.24") - 1), width("1年わずか"), 1e-9);
    EXPECT_NEAR(widest("Every day $29.99/year", width("Every day $29.99/")), width("$29.99/year"), 1e-9);
    // Without a good place a line ends where it may.
    EXPECT_NEAR(widest("a $29.99/year", width("a $29.99/")), width("a $29.99/"), 1e-9);
}

TEST(TextLayoutTest, SentencesThatFitStandOnLinesOfTheirOwn) {
    auto const room = width("Verlängert sich automatisch.") + 40;
    auto const widest = [&](std::string text) {
        return layout(std::move(text), wrapping(room)).size().width;
    };
    EXPECT_NEAR(widest("Jederzeit kündbar. Verlängert sich automatisch."),
                width("Verlängert sich automatisch."), 1e-9);
    EXPECT_LE(widest("يمكن الإلغاء في أي وقت. يُجدَّد تلقائيًا كل سنة. نعم."), room)
        << "more sentences than lines";
    auto const japanese = std::string{"いつでも解約できます。"};
    EXPECT_NEAR(layout(japanese + "自動で更新されます。", wrapping(width(japanese) + 20)).size().width,
                width(japanese), 1e-9);
    // One line is not broken, and a sentence that needs more than a line shares it.
    EXPECT_EQ(layout("Ja. Nein.", wrapping(room)).lineCount(), 1);
    EXPECT_GT(widest("Ja. Verlängert sich automatisch, und zwar jedes Jahr."),
              width("Verlängert sich automatisch."));
}

TEST(TextLayoutTest, TruncatesWithAnEllipsisInsideTheWidth) {
    auto const full = std::string("Unlock everything today and tomorrow");
    for (auto const mode : {NSLineBreakMode::byTruncatingHead, NSLineBreakMode::byTruncatingMiddle,
                            NSLineBreakMode::byTruncatingTail}) {
        auto const text = layout(full, wrapping(150, 1, mode));
        EXPECT_TRUE(text.isTruncated());
        EXPECT_FALSE(text.isWrapped());
        EXPECT_EQ(text.lineCount(), 1);
        EXPECT_LE(text.size().width, 150 + 1e-6);
        EXPECT_GT(text.size().width, 130);
    }
    EXPECT_FALSE(layout(full, wrapping(width(full), 1)).isTruncated());
    // The longest head is kept, without the space before the ellipsis.
    auto const room = width("Unlock …") + 0.01;
    EXPECT_NEAR(layout("Unlock everything", wrapping(room, 1)).size().width, width("Unlock…"), 0.2);
    EXPECT_NEAR(layout("Unlock", wrapping(2, 1)).size().width, width("…"), 1e-9) << "no room for more";
}

TEST(TextLayoutTest, TheLastLineThatNumberOrHeightAllowIsTruncated) {
    auto const text = layout("one two three four five six seven eight", wrapping(80, 2));
    EXPECT_EQ(text.lineCount(), 2);
    EXPECT_TRUE(text.isTruncated());
    EXPECT_TRUE(text.isWrapped());
    auto const paragraphs = layout("first\nsecond", wrapping(500, 1));
    EXPECT_TRUE(paragraphs.isTruncated());
    EXPECT_NEAR(paragraphs.size().width, width("first…"), 1e-9);
    // The head gives way to the end of the whole text, not of the first paragraph.
    auto const head =
        layout("first\nsecond", wrapping(width("…second") + 1, 1, NSLineBreakMode::byTruncatingHead));
    EXPECT_NEAR(head.size().width, width("…second"), 0.5);

    auto const line = layout("x").size().height;
    TextLimits limits{.width = 80, .height = 2.9 * line, .lineBreakMode = NSLineBreakMode::byTruncatingTail};
    auto const low = layout("one two three four five six seven eight", limits);
    EXPECT_EQ(low.lineCount(), 2);
    EXPECT_TRUE(low.isTruncated());
    limits.height = 1;
    EXPECT_EQ(layout("one two three four five", limits).lineCount(), 1);
    limits.height = 2 * line;
    EXPECT_EQ(layout("one\ntwo", limits).lineCount(), 2);
}

TEST(TextLayoutTest, OtherModesHaveNoEllipsis) {
    auto const cut =
        layout("Unlock everything", wrapping(width("Unlock eve"), 1, NSLineBreakMode::byWordWrapping));
    EXPECT_TRUE(cut.isTruncated());
    EXPECT_NEAR(cut.size().width, width("Unlock"), 1e-9);

    auto const clipped = layout("Unlock everything", wrapping(40, 1, NSLineBreakMode::byClipping));
    EXPECT_TRUE(clipped.isTruncated());
    EXPECT_FALSE(clipped.isWrapped());
    EXPECT_NEAR(clipped.size().width, width("Unlock everything"), 1e-9) << "the last line may overflow";

    auto characters = run("aaaa aaaa");
    characters.paragraph.lineBreakMode = NSLineBreakMode::byCharWrapping;
    TextLayout const filled({characters}, {.width = width("aaaa a") + 0.01});
    EXPECT_EQ(filled.lineCount(), 2);
    EXPECT_NEAR(filled.size().width, width("aaaa a"), 1e-9);
    EXPECT_FALSE(filled.breaksWord());
}

TEST(TextLayoutTest, OddInputDoesNoHarm) {
    auto const nan = std::numeric_limits<double>::quiet_NaN();
    auto odd = run("broken \xff\xfe utf\t8 \x01 \u200d\ufe0f", nan);
    odd.kern = nan;
    TextLayout const text({odd}, {.width = nan, .height = -5, .fontScale = nan});
    EXPECT_EQ(text.lineCount(), 1);
    EXPECT_TRUE(std::isfinite(text.size().width));
    EXPECT_EQ(layout("word", wrapping(-10)).lineCount(), 4);
    EXPECT_GT(layout("x\ty").size().width, width("xy"));
}

TEST(TextLayoutTest, UnseenCharactersTakeNoRoom) {
    for (auto const* text : {"a\u00adb", "a\u200bb", "a\u2060b", "a\u200eb",
                             "a\x01"
                             "b",
                             "a\ufe0f"
                             "b"})
        EXPECT_NEAR(width(text), width("ab"), 0.1) << text;
    // What no font has is shown as missing, each alike.
    EXPECT_GT(width("\U000e8000"), 0);
    EXPECT_EQ(width("\U000e8000"), width("\U000f1234"));
}

} // namespace trelundo
