#pragma once

#include "trelundo/platform/graphics/text/TextLayout.h"
#include "trelundo/platform/graphics/text/internal/TextLine.h"

#include <memory>
#include <vector>

namespace trelundo {

/// Breaks text into lines within limits.
class Typesetter {
public:
    Typesetter(std::vector<TextRun> const& runs, TextLimits const& limits);

    std::vector<ScaledStyle> styles;
    std::vector<TextLine> lines;
    bool isTruncated = false;
    double height = 0;

private:
    struct Source {
        StyledText text;
        std::size_t endStyle = 0;  // style of the line end, for empty lines
        bool endsParagraph = true; // false: a line separator
    };
    struct Place {
        std::size_t source = 0;
        std::size_t character = 0;
    };

    void readRuns(std::vector<TextRun> const& runs);
    void readUnits(std::u16string const& units, std::size_t style);
    void typeset();
    TextLine makeLine(Place place);
    std::size_t fittingEnd(TextLine& line, bool byWords) const;
    std::size_t lineEnd(TextLine& line);
    std::vector<std::size_t> sentenceLines(TextLine line) const;
    std::size_t lastWord(TextLine const& line) const;
    void keepCompany(TextLine& last);
    void placeLine(TextLine& line);
    double gapAfter(TextLine const& line) const;
    bool fitsBelow(TextLine const& line) const;
    Place after(TextLine const& line) const;

    void endLastLine(Place next);
    void placeLast();
    StyledText remainder(TextLine const& line, bool toTheEnd) const;
    void truncate(TextLine& line, NSLineBreakMode mode);
    TextLine shortened(TextLine const& line, StyledText const& text, NSLineBreakMode mode);

    std::shared_ptr<TextParagraph const> paragraph(std::size_t source);
    bool isRightToLeft(StyledText const& text, NSParagraphStyle const& style) const;
    NSParagraphStyle const& styleOf(std::size_t source) const;
    double room(TextLine const& line) const;

    TextLimits limits_;
    std::vector<Source> sources_;
    std::vector<std::shared_ptr<TextParagraph const>> paragraphs_;
    std::vector<std::size_t>
        sentenceLines_; // where the lines of the present paragraph end, if between sentences
};

} // namespace trelundo
