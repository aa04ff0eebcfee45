#include "trelundo/platform/graphics/text/internal/TextLines.h"

#include "trelundo/platform/graphics/text/internal/TextUnicode.h"

#include <QString>

#include <algorithm>
#include <cmath>

namespace trelundo {

namespace {

// Sums of fractions may miss the width that was measured from them.
constexpr double tolerance = 1e-6;

// Share of the room that a line must fill to end where it looks best. Emptier lines would be holes in the
// text.
constexpr double fullEnough = 0.4;

double limit(double value) { return std::isnan(value) ? greatestFiniteMagnitude : std::max(value, 0.0); }

bool isLineEnd(char16_t unit) {
    return unit == u'\n' || unit == u'\r' || unit == u'\u2028' || unit == u'\u2029';
}

double visibleWidth(TextParagraph const& paragraph, std::size_t first, std::size_t last) {
    while (last > first && paragraph.characters[last - 1].isSpace) --last;
    return paragraph.width(first, last);
}

} // namespace

LineSetter::LineSetter(std::vector<TextRun> const& runs, TextLimits const& limits)
    : limits_(limits) {
    limits_.width = limit(limits.width);
    limits_.height = limit(limits.height);
    if (!(limits_.fontScale > 0) || !std::isfinite(limits_.fontScale)) limits_.fontScale = 1;
    for (auto const& run : runs) styles.emplace_back(run, limits_.fontScale);
    readRuns(runs);
    if (!runs.empty()) setLines();
}

void LineSetter::readRuns(std::vector<TextRun> const& runs) {
    if (runs.empty()) return;
    sources_.emplace_back();
    for (std::size_t style = 0; style < runs.size(); ++style) {
        auto const& text = runs[style].text;
        readUnits(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())).toStdU16String(),
                  style);
    }
    paragraphs_.resize(sources_.size());
}

void LineSetter::readUnits(std::u16string const& units, std::size_t style) {
    sources_.back().endStyle = style;
    for (std::size_t start = 0; start < units.size();) {
        auto const end = static_cast<std::size_t>(
            std::find_if(units.begin() + static_cast<std::ptrdiff_t>(start), units.end(), isLineEnd) -
            units.begin());
        sources_.back().text.append(std::u16string_view(units).substr(start, end - start), style);
        sources_.back().endStyle = style;
        if (end == units.size()) return;
        sources_.back().endsParagraph = units[end] != u'\u2028';
        auto const pair = units[end] == u'\r' && end + 1 < units.size() && units[end + 1] == u'\n';
        start = end + (pair ? 2 : 1);
        sources_.emplace_back().endStyle = style;
    }
}

NSParagraphStyle const& LineSetter::styleOf(std::size_t source) const {
    auto const& text = sources_[source].text;
    return styles[text.styles.empty() ? sources_[source].endStyle : text.styles.front()].look.paragraph;
}

bool LineSetter::isRightToLeft(StyledText const& text, NSParagraphStyle const& style) const {
    if (style.baseWritingDirection != NSWritingDirection::natural)
        return style.baseWritingDirection == NSWritingDirection::rightToLeft;
    auto const direction = baseDirection(text.units);
    return direction == BaseDirection::none ? limits_.rightToLeft : direction == BaseDirection::rightToLeft;
}

std::shared_ptr<TextParagraph const> LineSetter::paragraph(std::size_t source) {
    auto& kept = paragraphs_[source];
    if (!kept) {
        auto const& text = sources_[source].text;
        kept = std::make_shared<TextParagraph const>(text, styles, isRightToLeft(text, styleOf(source)));
    }
    return kept;
}

double LineSetter::room(SetLine const& line) const {
    if (limits_.width == greatestFiniteMagnitude) return limits_.width;
    return std::max(limits_.width - line.leading - line.trailing, 0.0);
}

LineSetter::Place LineSetter::after(SetLine const& line) const {
    return line.softEnd ? Place{line.source, line.last} : Place{line.source + 1, 0};
}

/// Sets lines until the text, their allowed number or the height ends, then finishes the last one.
void LineSetter::setLines() {
    Place next;
    while (next.source < sources_.size()) {
        if (limits_.numberOfLines > 0 && static_cast<int>(lines.size()) == limits_.numberOfLines) break;
        auto line = setLine(next);
        keepCompany(line);
        placeLine(line);
        if (!fitsBelow(line)) break;
        next = after(line);
        lines.push_back(std::move(line));
    }
    endLastLine(next);
    height = lines.back().top + lines.back().height;
}

bool LineSetter::fitsBelow(SetLine const& line) const {
    return lines.empty() || line.top + line.height <= limits_.height + tolerance;
}

SetLine LineSetter::setLine(Place place) {
    SetLine line;
    line.source = place.source;
    line.paragraph = paragraph(place.source);
    line.style = styleOf(place.source);
    line.first = place.character;
    auto const& style = line.style;
    auto const scale = limits_.fontScale;
    line.leading = (place.character == 0 ? style.firstLineHeadIndent : style.headIndent) * scale;
    // A positive tail indent counts from the leading edge, any other from the trailing one.
    line.trailing = -style.tailIndent * scale;
    if (style.tailIndent > 0)
        line.trailing = limits_.width == greatestFiniteMagnitude ? 0 : limits_.width + line.trailing;
    auto const byWords = style.lineBreakMode != NSLineBreakMode::byCharWrapping;
    auto const& text = *line.paragraph;
    line.last = fittingEnd(line, byWords);
    line.softEnd = line.last < text.characters.size();
    line.width = visibleWidth(text, line.first, line.last);
    // Spaces at the end of a paragraph count as far as there is room.
    if (!line.softEnd)
        line.width = std::max(line.width, std::min(text.width(line.first, line.last), room(line)));
    return line;
}

std::size_t LineSetter::fittingEnd(SetLine& line, bool byWords) const {
    auto const& text = *line.paragraph;
    auto const most = room(line) + tolerance;
    double width = 0;
    auto wordEnd = line.first;
    auto phraseEnd = line.first;
    for (auto i = line.first; i < text.characters.size(); ++i) {
        auto const& character = text.characters[i];
        if (i > line.first && !character.isSpace && width + character.advance > most) {
            if (byWords && text.width(line.first, phraseEnd) > most * fullEnough) return phraseEnd;
            if (byWords && wordEnd > line.first) return wordEnd;
            line.breaksWord = byWords;
            return i;
        }
        width += character.advance;
        if (character.mayBreakAfter) wordEnd = i + 1;
        if (character.breaksWellAfter) phraseEnd = i + 1;
    }
    return text.characters.size();
}

/// Where the last word of a line begins, which may be the line's own beginning.
std::size_t LineSetter::lastWord(SetLine const& line) const {
    auto first = line.last;
    do {
        if (first > line.first) --first;
    } while (first > line.first && !line.paragraph->characters[first - 1].breaksWellAfter);
    return first;
}

/// A short word alone on the last line of a paragraph gets the word before it for company.
void LineSetter::keepCompany(SetLine& last) {
    if (lines.empty() || last.softEnd || lines.back().source != last.source) return;
    auto above = lines.back();
    auto const& text = *last.paragraph;
    auto const byWords = last.style.lineBreakMode != NSLineBreakMode::byCharWrapping;
    if (!byWords || above.breaksWord || last.width * 2 > above.width || lastWord(last) > last.first) return;
    above.last = lastWord(above);
    above.width = visibleWidth(text, above.first, above.last);
    auto const width = visibleWidth(text, above.last, last.last);
    if (above.width < width || width > room(last) + tolerance) return;
    lines.pop_back();
    placeLine(above);
    lines.push_back(above);
    last = setLine(after(above));
}

double LineSetter::gapAfter(SetLine const& line) const {
    auto gap = line.style.lineSpacing;
    if (!line.softEnd && sources_[line.source].endsParagraph) {
        gap += line.style.paragraphSpacing;
        if (line.source + 1 < sources_.size()) gap += styleOf(line.source + 1).paragraphSpacingBefore;
    }
    return gap * limits_.fontScale;
}

/// Gives a line its height, by its tallest font and the paragraph's wishes, and puts it below the one before.
void LineSetter::placeLine(SetLine& line) {
    auto const& text = *line.paragraph;
    auto const& fallback = styles[line.first < text.characters.size() ? text.characters[line.first].style
                                                                      : sources_[line.source].endStyle];
    auto ascent = fallback.ascent;
    auto descent = fallback.descent;
    for (auto i = line.first; i < line.last; ++i) {
        auto const& style = styles[text.characters[i].style];
        ascent = std::max(ascent, style.ascent);
        descent = std::max(descent, style.descent);
    }
    auto const natural = ascent + descent;
    auto const scale = limits_.fontScale;
    line.height = line.style.lineHeightMultiple > 0 ? natural * line.style.lineHeightMultiple : natural;
    line.height = std::max(line.height, line.style.minimumLineHeight * scale);
    if (line.style.maximumLineHeight > 0)
        line.height = std::min(line.height, line.style.maximumLineHeight * scale);
    line.top = lines.empty() ? 0 : lines.back().top + lines.back().height + gapAfter(lines.back());
    line.baseline = line.top + line.height - natural + ascent;
}

} // namespace trelundo
