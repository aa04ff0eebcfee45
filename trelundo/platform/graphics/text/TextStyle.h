#pragma once

#include "trelundo/platform/graphics/CGColor.h"

#include <optional>
#include <string>

namespace trelundo {

enum class NSTextAlignment : int { left = 0, center = 1, right = 2, justified = 3, natural = 4 };
enum class NSLineBreakMode : int {
    byWordWrapping = 0,
    byCharWrapping = 1,
    byClipping = 2,
    byTruncatingHead = 3,
    byTruncatingTail = 4,
    byTruncatingMiddle = 5,
};
enum class NSWritingDirection : int { natural = -1, leftToRight = 0, rightToLeft = 1 };
/// Bits: a line style, a pattern and byWord may be combined.
enum class NSUnderlineStyle : int {
    none = 0,
    single = 1,
    thick = 2,
    doubleLine = 9,
    patternDot = 0x100,
    patternDash = 0x200,
    patternDashDot = 0x300,
    patternDashDotDot = 0x400,
    byWord = 0x8000,
};

/// How the lines of a paragraph are set. All distances in points.
struct NSParagraphStyle {
    NSTextAlignment alignment = NSTextAlignment::natural;
    NSLineBreakMode lineBreakMode = NSLineBreakMode::byWordWrapping;
    NSWritingDirection baseWritingDirection = NSWritingDirection::natural;
    double lineSpacing = 0; // between lines only
    double paragraphSpacing = 0;
    double paragraphSpacingBefore = 0;
    double headIndent = 0;
    double tailIndent = 0;
    double firstLineHeadIndent = 0;
    double lineHeightMultiple = 0; // 0: 1
    double minimumLineHeight = 0;  // 0: free
    double maximumLineHeight = 0;  // 0: free
    bool operator==(NSParagraphStyle const&) const = default;
};

/// A face of the system family.
struct FontSpec {
    double size = 17;
    int weight = 400; // 100 to 900
    bool isItalic = false;
    bool operator==(FontSpec const&) const = default;

    // Vertical metrics shared by all weights, in points, by 1950, -494, 1443 and 1078 units of 2048.
    double ascender() const { return size * 1950 / 2048; }
    double descender() const { return size * -494 / 2048; }
    double lineHeight() const { return size * 2444 / 2048; }
    double capHeight() const { return size * 1443 / 2048; }
    double xHeight() const { return size * 1078 / 2048; }
};

/// Text of one run.
struct TextRun {
    std::string text;
    FontSpec font;
    CGColor color;
    std::optional<CGColor> background;
    std::optional<double> kern; // points after each character; absent: the font's own
    NSUnderlineStyle underline = NSUnderlineStyle::none;
    std::optional<CGColor> underlineColor; // absent: the text's
    NSUnderlineStyle strikethrough = NSUnderlineStyle::none;
    std::optional<CGColor> strikethroughColor; // absent: the text's
    double baselineOffset = 0;
    NSParagraphStyle paragraph;
    bool operator==(TextRun const&) const = default;
};

} // namespace trelundo
