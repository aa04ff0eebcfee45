#pragma once

#include "trelundo/platform/graphics/text/TextStyle.h"
#include "trelundo/platform/graphics/text/internal/ShapedWord.h"

#include <memory>
#include <string>
#include <vector>

namespace trelundo {

/// A run's attributes with everything that depends on the scale worked out.
struct ScaledStyle {
    ScaledStyle(TextRun original, double scale);

    TextRun run; // without its text
    FontSpec font;
    double kern;      // points after each character
    double tracking;  // points after each character of the system family
    bool usesKerning; // the font's own
    double ascent;    // points above the baseline, the baseline offset included
    double descent;
};

/// UTF-16 text with the index of a style for each unit.
struct StyledText {
    void append(std::u16string_view more, std::size_t style);
    StyledText part(std::size_t start, std::size_t end) const;

    std::u16string units;
    std::vector<std::size_t> styles;
};

/// A user-perceived character as it stands in a paragraph.
struct TextCharacter {
    std::size_t start; // UTF-16 unit
    std::size_t style;
    FontFace* face; // set for every character before any is shaped
    std::shared_ptr<ShapedWord const> word;
    std::size_t indexInWord;
    double advance; // points, kerning and tracking included
    std::uint8_t level;
    bool isSpace;
    bool mayBreakAfter;
    bool breaksWellAfter;
};

/// Text without line ends, shaped and measured.
struct TextParagraph {
    TextParagraph(StyledText source, std::vector<ScaledStyle> const& styles, bool isRightToLeft);

    std::size_t end(std::size_t character) const;
    double width(std::size_t first, std::size_t last) const;

    StyledText text;
    bool isRightToLeft;
    std::vector<TextCharacter> characters;

private:
    void splitCharacters(std::vector<ScaledStyle> const& styles);
    std::u16string_view cluster(std::size_t character) const;
    void chooseFacesByStyle(std::vector<ScaledStyle> const& styles);
    void shape(std::vector<ScaledStyle> const& styles);
    std::size_t wordEnd(std::size_t first) const;
    void shapeCharacters(std::size_t first, std::size_t last, std::vector<ScaledStyle> const& styles);
};

/// Extra space after each character of the system family at a size, both in points.
double systemTracking(double size);

} // namespace trelundo
