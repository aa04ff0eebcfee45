#pragma once

#include "trelundo/platform/graphics/text/TextLayout.h"
#include "trelundo/platform/graphics/text/internal/TextParagraph.h"

#include <memory>
#include <vector>

namespace trelundo {

/// A line as it is drawn: characters `first` to before `last` of a paragraph.
struct SetLine {
    std::shared_ptr<TextParagraph const> paragraph;
    std::size_t source = 0; // which paragraph of the text this stands for
    std::size_t first = 0;
    std::size_t last = 0;
    double width = 0;   // points, without hanging spaces
    double leading = 0; // indents from the leading and trailing edges, points
    double trailing = 0;
    double top = 0;
    double height = 0;
    double baseline = 0;     // from the top of the text
    bool softEnd = false;    // broken where the text has no line end
    bool breaksWord = false; // broken inside a word for want of width
    NSParagraphStyle style;
};

/// Breaks text into lines within limits.
class LineSetter {
public:
    LineSetter(std::vector<TextRun> const& runs, TextLimits const& limits);

    std::vector<ScaledStyle> styles;
    std::vector<SetLine> lines;
    bool truncated = false;
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
    void setLines();
    SetLine setLine(Place place);
    std::size_t fittingEnd(SetLine& line, bool byWords) const;
    std::size_t lastWord(SetLine const& line) const;
    void keepCompany(SetLine& last);
    void placeLine(SetLine& line);
    double gapAfter(SetLine const& line) const;
    bool fitsBelow(SetLine const& line) const;
    Place after(SetLine const& line) const;

    void endLastLine(Place next);
    void placeLast();
    StyledText remainder(SetLine const& line, bool toTheEnd) const;
    void truncate(SetLine& line, NSLineBreakMode mode);
    SetLine shortened(SetLine const& line, StyledText const& text, NSLineBreakMode mode);

    std::shared_ptr<TextParagraph const> paragraph(std::size_t source);
    bool isRightToLeft(StyledText const& text, NSParagraphStyle const& style) const;
    NSParagraphStyle const& styleOf(std::size_t source) const;
    double room(SetLine const& line) const;

    TextLimits limits_;
    std::vector<Source> sources_;
    std::vector<std::shared_ptr<TextParagraph const>> paragraphs_;
};

} // namespace trelundo
