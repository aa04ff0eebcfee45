#include "tests/platform/uikit/DeviceFixture.h"
#include "trelundo/platform/uikit/text/UILabel.h"

namespace trelundo {

namespace {

namespace Key = NSAttributedStringKey;

Ref<UILabel> label(std::string text, double size = 17) {
    auto label = make<UILabel>();
    label->setFont(UIFont::system(size));
    label->setText(std::move(text));
    return label;
}

NSAttributedString styled(std::string text, NSParagraphStyle const& style, double size = 17) {
    TextAttributes attributes;
    attributes.set(Key::font, UIFont::system(size)).set(Key::paragraphStyle, style);
    return NSAttributedString{std::move(text), attributes};
}

std::string const sentence = "You can cancel your subscription at any time";

} // namespace

using LabelTest = DeviceFixture;

TEST_F(LabelTest, LineFeedsMakeLinesAsFarAsAllowedWithSpacingBetweenThem) {
    struct Row {
        char const* text;
        int numberOfLines;
        double lineSpacing, height;
    };
    for (auto const& row :
         {Row{"", 1, 0, 0}, Row{"\n", 2, 0, 36}, Row{"one\ntwo\nthree", 2, 0, 36},
          Row{"one\ntwo\nthree", 0, 0, 54}, Row{"one", 2, 4, 18}, Row{"one\ntwo", 2, 4, 40}}) {
        auto const text = make<UILabel>();
        text->setNumberOfLines(row.numberOfLines);
        text->setAttributedText(styled(row.text, {.lineSpacing = row.lineSpacing}, 15));
        text->sizeToFit();
        EXPECT_EQ(text->text(), row.text);
        EXPECT_DOUBLE_EQ(text->bounds().size.height, row.height) << row.text << " in " << row.numberOfLines;
    }
    auto const text = label("one\ntwo\nthree", 15);
    text->setNumberOfLines(0);
    EXPECT_EQ(text->intrinsicContentSize().width, label("three", 15)->intrinsicContentSize().width);
    text->setText(std::nullopt);
    EXPECT_EQ(text->intrinsicContentSize(), CGSize{});
    EXPECT_FALSE(text->text());
    EXPECT_FALSE(text->drawsContents());
}

TEST_F(LabelTest, AttributedTextTakesFromTheLabelWhatItLacksAndAllThatIsSetLater) {
    auto const text = make<UILabel>();
    text->setFont(UIFont::boldSystem(20));
    text->setTextColor(UIColor::red());
    text->setTextAlignment(NSTextAlignment::center);
    NSAttributedString content{"own", TextAttributes{}.with(Key::font, UIFont::system(10))};
    content.append("label's");
    text->setAttributedText(content);
    auto const runs = text->resolvedRuns();
    ASSERT_EQ(runs.size(), 2u);
    EXPECT_EQ(runs[0].font, (FontSpec{10, 400, false}));
    EXPECT_EQ(runs[0].color, (CGColor{1, 0, 0, 1}));
    EXPECT_EQ(runs[1].font, (FontSpec{20, 700, false}));
    EXPECT_EQ(runs[1].paragraph.alignment, NSTextAlignment::center);
    EXPECT_EQ(text->text(), "ownlabel's");
    EXPECT_EQ(text->font(), UIFont::system(10)) << "of the first character";
    EXPECT_EQ(text->textColor(), UIColor::red());
    text->setText("plain");
    EXPECT_EQ(text->font(), UIFont::boldSystem(20));

    text->setAttributedText(styled("Offer", {.alignment = NSTextAlignment::left, .lineSpacing = 4}, 10));
    text->setFont(UIFont::system(30));
    text->setTextColor(UIColor::black());
    text->setTextAlignment(NSTextAlignment::right);
    auto const later = text->resolvedRuns()[0];
    EXPECT_EQ(later.font.size, 30);
    EXPECT_EQ(later.color, (CGColor{0, 0, 0, 1}));
    EXPECT_EQ(later.paragraph.alignment, NSTextAlignment::right);
    EXPECT_EQ(later.paragraph.lineSpacing, 4);
    text->setText("plain");
    EXPECT_EQ(text->resolvedRuns()[0].paragraph.lineSpacing, 0);
}

TEST_F(LabelTest, TheSolvedWidthWrapsButDoesNotNarrowAndAPreferredOneFixesIt) {
    auto const text = label(sentence, 15);
    text->setNumberOfLines(0);
    auto const natural = text->intrinsicContentSize();
    EXPECT_EQ(text->sizeThatFits({0, 0}), natural);
    EXPECT_EQ(text->sizeThatFits({greatestFiniteMagnitude, 0}), natural);
    EXPECT_DOUBLE_EQ(text->sizeThatFits({natural.width * 0.6, 0}).height, 36);
    EXPECT_TRUE(text->layoutWidthDidChange(natural.width * 0.6));
    EXPECT_EQ(text->intrinsicContentSize(), (CGSize{natural.width, 36}));
    EXPECT_FALSE(text->layoutWidthDidChange(natural.width * 0.61));
    EXPECT_TRUE(text->layoutWidthDidChange(natural.width + 100));
    EXPECT_EQ(text->intrinsicContentSize(), natural);
    text->setNumberOfLines(1);
    EXPECT_EQ(text->sizeThatFits({50, 50}), natural);
    EXPECT_FALSE(text->layoutWidthDidChange(10));
    text->setNumberOfLines(0);
    text->setPreferredMaxLayoutWidth(natural.width * 0.6);
    EXPECT_LE(text->intrinsicContentSize().width, natural.width * 0.6 + 0.5);
    EXPECT_DOUBLE_EQ(text->intrinsicContentSize().height, 36);
    EXPECT_FALSE(text->layoutWidthDidChange(50));
}

TEST_F(LabelTest, ShrinksByTheLargestFactorThatFits) {
    auto const text = label(sentence, 20);
    auto const natural = text->intrinsicContentSize().width;
    text->setAdjustsFontSizeToFitWidth(true);
    text->setMinimumScaleFactor(0.5);
    text->setFrame({0, 0, natural * 0.8, 24});
    EXPECT_NEAR(text->fit().scale, 0.8, 0.02);
    EXPECT_FALSE(text->fit().truncated);
    text->setFrame({0, 0, natural * 0.6, 24});
    EXPECT_NEAR(text->fit().scale, 0.57, 0.03); // small sizes are set wider
    EXPECT_FALSE(text->fit().truncated);
    EXPECT_DOUBLE_EQ(text->intrinsicContentSize().width, natural);
    text->setFrame({0, 0, natural + 50, 24});
    EXPECT_EQ(text->fit().scale, 1);
    text->setFrame({0, 0, natural * 0.3, 24});
    EXPECT_EQ(text->fit().scale, 0.5);
    EXPECT_TRUE(text->fit().truncated);
    text->setMinimumScaleFactor(0);
    EXPECT_EQ(text->fit().scale, 1) << "without a factor it truncates";
    EXPECT_TRUE(text->fit().truncated);
    EXPECT_EQ(text->fit().lineCount, 1);

    text->setMinimumScaleFactor(0.3);
    text->setNumberOfLines(2);
    text->setFrame({0, 0, natural * 0.35, 48});
    EXPECT_NEAR(text->fit().scale, 0.65, 0.2) << "several shrink until all fit";
    EXPECT_FALSE(text->fit().truncated);
    EXPECT_EQ(text->fit().lineCount, 2);
}

TEST_F(LabelTest, WhatDoesNotFitIsCutButAFrameRoundedToPixelsFits) {
    auto const text = label(sentence, 15);
    auto const natural = text->intrinsicContentSize();
    text->setFrame({0, 0, natural.width - 0.5, natural.height - 0.5});
    EXPECT_FALSE(text->fit().truncated);
    text->setFrame({0, 0, natural.width - 3, natural.height});
    EXPECT_TRUE(text->fit().truncated);
    text->setText(sentence + ' ' + sentence);
    for (auto const& [lines, height] : {std::pair{2, 100.0}, std::pair{0, 40.0}}) {
        text->setNumberOfLines(lines);
        text->setFrame({0, 0, 120, height});
        EXPECT_EQ(text->fit().lineCount, 2) << height;
        EXPECT_TRUE(text->fit().truncated) << height;
    }
}

TEST_F(LabelTest, BaselinesFollowTheMetrics) {
    auto const text = label("Offer\nPrice", 20);
    text->setNumberOfLines(2);
    double const height = text->intrinsicContentSize().height;
    double const lines = 2 * UIFont::system(20).lineHeight();
    double const margin = (height - lines) / 2;
    EXPECT_NEAR(*text->firstBaselineOffsetFromTop(), margin + UIFont::system(20).ascender(), 0.01);
    EXPECT_NEAR(*text->lastBaselineOffsetFromBottom(), margin - UIFont::system(20).descender(), 0.01);
    EXPECT_FALSE(make<UILabel>()->firstBaselineOffsetFromTop());
}

TEST_F(LabelTest, TextIsDrawnVerticallyCentredAlignedAndInTheAppearancesColour) {
    auto const text = label("\xE2\x96\x88\xE2\x96\x88", 20); // two full blocks
    show(text, {0, 0, 200, 200});
    shell.window().setBackgroundColor(UIColor::red());
    double const width = text->intrinsicContentSize().width;
    EXPECT_TRUE(isInked({width / 2, 100}));
    EXPECT_FALSE(isInked({width / 2, 20}));
    EXPECT_FALSE(isInked({width / 2, 180}));
    EXPECT_EQ(shell.window().hitTest({100, 100}).get(), &shell.window()) << "touches go through a label";
    text->setTextAlignment(NSTextAlignment::right);
    EXPECT_FALSE(isInked({width / 2, 100}));
    EXPECT_TRUE(isInked({200 - width / 2, 100}));
    text->setTextAlignment(NSTextAlignment::center);
    EXPECT_EQ(pixelAt({100, 100}), 0xFF000000);
    EXPECT_FALSE(isInked({200 - width / 2, 100}));
    shell.setUserInterfaceStyle(UIUserInterfaceStyle::dark);
    EXPECT_EQ(pixelAt({100, 100}), 0xFFFFFFFF) << "the colour of labels is dynamic";

    text->setTextAlignment(NSTextAlignment::natural);
    EXPECT_TRUE(isInked({width / 2, 100}));
    text->setSemanticContentAttribute(UISemanticContentAttribute::forceRightToLeft);
    text->setNeedsDisplay();
    EXPECT_TRUE(isInked({200 - width / 2, 100})) << "a text without a direction takes the view's";
    text->setText("HHHHH");
    EXPECT_FALSE(isInked({200 - width / 2, 100}));
}

TEST_F(LabelTest, TextChangesAreReportedOnceAndOnlyWhenTheyCanBeSeen) {
    recordTexts();
    auto const text = label("before");
    text->setText("ready");
    show(text, {0, 0, 100, 30});
    EXPECT_TRUE(texts.empty());
    text->setText("ready");
    text->setFont(UIFont::system(12));
    text->setAttributedText(NSAttributedString{"ready"});
    EXPECT_TRUE(texts.empty());
    text->setText("changed");
    text->setText(std::nullopt);
    EXPECT_EQ(texts, (std::vector<std::string>{"UILabel: changed", "UILabel: "}));
    text->removeFromSuperview();
    text->setText("unseen");
    EXPECT_EQ(texts.size(), 2u);
}

} // namespace trelundo
