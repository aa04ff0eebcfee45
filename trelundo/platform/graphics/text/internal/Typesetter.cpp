#include "trelundo/platform/graphics/text/internal/Typesetter.h"

#include "trelundo/platform/graphics/text/internal/UnicodeAlgorithms.h"

#include <QString>

#include <algorithm>
#include <cmath>
#include <utility>

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

bool isHeldTogether(TextParagraph const& text, std::size_t first, std::size_t last) {
    auto const isNoBreakSpace = [&](TextCharacter const& character) {
        auto const unit = text.text.units[character.start];
        return unit == u'\u00a0' || unit == u'\u202f';
    };
    auto const begin = text.characters.begin();
    return std::any_of(begin + static_cast<std::ptrdiff_t>(first), begin + static_cast<std::ptrdiff_t>(last),
                       isNoBreakSpace);
}

constexpr char16_t ellipsis[] = u"\u2026";

bool isTruncating(NSLineBreakMode mode) {
    return mode == NSLineBreakMode::byTruncatingHead || mode == NSLineBreakMode::byTruncatingTail ||
           mode == NSLineBreakMode::byTruncatingMiddle;
}

/// How many characters stay at each end of a shortened line.
struct Kept {
    std::size_t head = 0;
    std::size_t tail = 0;
};

/// Takes characters from one end while they fit into `room`; what is left of it is the result.
double take(TextParagraph const& text, std::size_t& count, std::size_t most, double room, bool fromHead) {
    while (count < most) {
        auto const& next = text.characters[fromHead ? count : text.characters.size() - 1 - count];
        if (next.advance > room + tolerance) break;
        room -= next.advance;
        ++count;
    }
    return room;
}

Kept keptCharacters(TextParagraph const& text, NSLineBreakMode mode, double room) {
    Kept kept;
    auto const all = text.characters.size();
    if (mode == NSLineBreakMode::byTruncatingTail) {
        take(text, kept.head, all, room, true);
    } else if (mode == NSLineBreakMode::byTruncatingHead) {
        take(text, kept.tail, all, room, false);
    } else {
        auto left = room / 2 + take(text, kept.head, all, room / 2, true);
        left = take(text, kept.tail, all - kept.head, left, false);
        take(text, kept.head, all - kept.tail, left, true);
    }
    return kept;
}

/// Leaves out one more character, at the longer end.
void shorten(Kept& kept) { --(kept.head >= kept.tail ? kept.head : kept.tail); }

void dropSpacesAtCut(TextParagraph const& text, Kept& kept) {
    auto const& characters = text.characters;
    while (kept.head > 0 && characters[kept.head - 1].isSpace) --kept.head;
    while (kept.tail > 0 && characters[characters.size() - kept.tail].isSpace) --kept.tail;
}

StyledText joined(TextParagraph const& text, Kept const& kept) {
    auto const headEnd = kept.head > 0 ? text.end(kept.head - 1) : 0;
    auto const tailStart =
        kept.tail > 0 ? text.characters[text.characters.size() - kept.tail].start : text.text.units.size();
    // The ellipsis looks like the text it follows, at the head like the text it precedes.
    auto const styleAt = kept.head > 0 ? headEnd - 1 : std::min(tailStart, text.text.units.size() - 1);
    auto result = text.text.part(0, headEnd);
    result.append(ellipsis, text.text.styles[styleAt]);
    auto const tail = text.text.part(tailStart, text.text.units.size());
    result.units += tail.units;
    result.styles.insert(result.styles.end(), tail.styles.begin(), tail.styles.end());
    return result;
}

} // namespace

Typesetter::Typesetter(std::vector<TextRun> const& runs, TextLimits const& limits)
    : limits_(limits) {
    limits_.width = limit(limits.width);
    limits_.height = limit(limits.height);
    if (!(limits_.fontScale > 0) || !std::isfinite(limits_.fontScale)) limits_.fontScale = 1;
    for (auto const& run : runs) styles.emplace_back(run, limits_.fontScale);
    readRuns(runs);
    if (!runs.empty()) typeset();
}

void Typesetter::readRuns(std::vector<TextRun> const& runs) {
    if (runs.empty()) return;
    sources_.emplace_back();
    for (std::size_t style = 0; style < runs.size(); ++style) {
        auto const& text = runs[style].text;
        readUnits(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())).toStdU16String(),
                  style);
    }
    paragraphs_.resize(sources_.size());
}

void Typesetter::readUnits(std::u16string const& units, std::size_t style) {
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

NSParagraphStyle const& Typesetter::styleOf(std::size_t source) const {
    auto const& text = sources_[source].text;
    return styles[text.styles.empty() ? sources_[source].endStyle : text.styles.front()].run.paragraph;
}

bool Typesetter::isRightToLeft(StyledText const& text, NSParagraphStyle const& style) const {
    if (style.baseWritingDirection != NSWritingDirection::natural)
        return style.baseWritingDirection == NSWritingDirection::rightToLeft;
    auto const direction = baseDirection(text.units);
    return direction == BaseDirection::none ? limits_.isRightToLeft : direction == BaseDirection::rightToLeft;
}

std::shared_ptr<TextParagraph const> Typesetter::paragraph(std::size_t source) {
    auto& kept = paragraphs_[source];
    if (!kept) {
        auto const& text = sources_[source].text;
        kept = std::make_shared<TextParagraph const>(text, styles, isRightToLeft(text, styleOf(source)));
    }
    return kept;
}

double Typesetter::room(TextLine const& line) const {
    if (limits_.width == greatestFiniteMagnitude) return limits_.width;
    return std::max(limits_.width - line.leading - line.trailing, 0.0);
}

Typesetter::Place Typesetter::after(TextLine const& line) const {
    return line.hasSoftEnd ? Place{line.source, line.last} : Place{line.source + 1, 0};
}

/// Sets lines until the text, their allowed number or the height ends, then finishes the last one.
void Typesetter::typeset() {
    Place next;
    while (next.source < sources_.size()) {
        if (limits_.numberOfLines > 0 && static_cast<int>(lines.size()) == limits_.numberOfLines) break;
        auto line = makeLine(next);
        keepCompany(line);
        placeLine(line);
        if (!fitsBelow(line)) break;
        next = after(line);
        lines.push_back(std::move(line));
    }
    endLastLine(next);
    height = lines.back().top + lines.back().height;
}

bool Typesetter::fitsBelow(TextLine const& line) const {
    return lines.empty() || line.top + line.height <= limits_.height + tolerance;
}

TextLine Typesetter::makeLine(Place place) {
    TextLine line;
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
    auto const& text = *line.paragraph;
    line.last = lineEnd(line);
    line.hasSoftEnd = line.last < text.characters.size();
    line.width = visibleWidth(text, line.first, line.last);
    // Spaces at the end of a paragraph count as far as there is room.
    if (!line.hasSoftEnd)
        line.width = std::max(line.width, std::min(text.width(line.first, line.last), room(line)));
    return line;
}

/// Between sentences where each of them stands on a line of its own, else where the line is full.
std::size_t Typesetter::lineEnd(TextLine& line) {
    auto const byWords = line.style.lineBreakMode != NSLineBreakMode::byCharWrapping;
    if (line.first == 0) sentenceLines_ = byWords ? sentenceLines(line) : std::vector<std::size_t>{};
    auto const planned = std::ranges::upper_bound(sentenceLines_, line.first);
    return planned == sentenceLines_.end() ? fittingEnd(line, byWords) : *planned;
}

/// Ends of the sentences of a paragraph that begins with `line`; none unless each fits a line and they take
/// no more lines so than filled to the brim.
std::vector<std::size_t> Typesetter::sentenceLines(TextLine line) const {
    auto const& text = *line.paragraph;
    auto const most = room(line) + tolerance;
    if (text.width(0, text.characters.size()) <= most) return {};
    std::vector<std::size_t> ends;
    std::size_t first = 0;
    for (auto const unit : sentenceEnds(text.text.units)) {
        auto const after = std::ranges::lower_bound(text.characters, static_cast<std::size_t>(unit), {},
                                                    &TextCharacter::start);
        ends.push_back(static_cast<std::size_t>(after - text.characters.begin()));
        if (visibleWidth(text, first, ends.back()) > most) return {};
        first = ends.back();
    }
    std::size_t count = 0;
    for (; line.first < text.characters.size(); ++count) line.first = fittingEnd(line, true);
    return count == ends.size() ? ends : std::vector<std::size_t>{};
}

std::size_t Typesetter::fittingEnd(TextLine& line, bool byWords) const {
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
std::size_t Typesetter::lastWord(TextLine const& line) const {
    auto first = line.last;
    do {
        if (first > line.first) --first;
    } while (first > line.first && !line.paragraph->characters[first - 1].breaksWellAfter);
    return first;
}

/// A short word alone on the last line of a paragraph, or a few of the shortest, gets the word before it for
/// company.
void Typesetter::keepCompany(TextLine& last) {
    if (lines.empty() || last.hasSoftEnd || lines.back().source != last.source) return;
    auto above = lines.back();
    auto const& text = *last.paragraph;
    auto const byWords = last.style.lineBreakMode != NSLineBreakMode::byCharWrapping;
    if (!byWords || !sentenceLines_.empty() || above.breaksWord) return;
    bool const isOneWord = lastWord(last) <= last.first;
    if (last.width * (isOneWord ? 2 : 5) > above.width) return;
    auto const end = std::exchange(above.last, lastWord(above));
    above.width = visibleWidth(text, above.first, above.last);
    auto const width = visibleWidth(text, above.last, last.last);
    // Only an amount with its sign may make the last line the longest.
    auto const least = isHeldTogether(text, above.last, end) ? last.width : width;
    if (above.width < least || width > room(last) + tolerance) return;
    lines.pop_back();
    placeLine(above);
    lines.push_back(above);
    last = makeLine(after(above));
}

double Typesetter::gapAfter(TextLine const& line) const {
    auto gap = line.style.lineSpacing;
    if (!line.hasSoftEnd && sources_[line.source].endsParagraph) {
        gap += line.style.paragraphSpacing;
        if (line.source + 1 < sources_.size()) gap += styleOf(line.source + 1).paragraphSpacingBefore;
    }
    return gap * limits_.fontScale;
}

/// Gives a line its height, by its tallest font and the paragraph's wishes, and puts it below the one before.
void Typesetter::placeLine(TextLine& line) {
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

/// Finishes the last line, after which the text goes on at `next` or has ended.
void Typesetter::endLastLine(Place next) {
    auto& line = lines.back();
    auto const mode = limits_.lineBreakMode.value_or(line.style.lineBreakMode);
    auto const more = next.source < sources_.size();
    if (mode == NSLineBreakMode::byClipping && line.hasSoftEnd) {
        line.last = line.paragraph->characters.size();
        line.width = line.paragraph->width(line.first, line.last);
        line.hasSoftEnd = line.breaksWord = false;
        placeLast();
        isTruncated = true;
    } else if (more) {
        isTruncated = true;
        if (isTruncating(mode)) truncate(line, mode);
    }
}

/// The text from the start of a line to the end of its paragraph, or of everything with spaces for line ends.
StyledText Typesetter::remainder(TextLine const& line, bool toTheEnd) const {
    auto const& text = line.paragraph->text;
    auto const start = line.first < line.paragraph->characters.size()
                           ? line.paragraph->characters[line.first].start
                           : text.units.size();
    auto result = text.part(start, text.units.size());
    for (auto next = line.source + 1; toTheEnd && next < sources_.size(); ++next) {
        result.append(u" ", sources_[next - 1].endStyle);
        auto const& source = sources_[next].text;
        result.units += source.units;
        result.styles.insert(result.styles.end(), source.styles.begin(), source.styles.end());
    }
    return result;
}

void Typesetter::truncate(TextLine& line, NSLineBreakMode mode) {
    auto text = remainder(line, mode != NSLineBreakMode::byTruncatingTail);
    if (text.units.empty()) text.append(u" ", sources_[line.source].endStyle);
    line = shortened(line, text, mode);
    placeLast();
}

TextLine Typesetter::shortened(TextLine const& line, StyledText const& text, NSLineBreakMode mode) {
    auto const rightToLeft = line.paragraph->isRightToLeft;
    TextParagraph const whole(text, styles, rightToLeft);
    auto const dots = [&](std::size_t style) {
        StyledText mark;
        mark.append(ellipsis, style);
        TextParagraph const shaped(mark, styles, rightToLeft);
        return shaped.width(0, shaped.characters.size());
    };
    auto const available = room(line);
    auto result = line;
    result.first = 0;
    result.hasSoftEnd = result.breaksWord = false;
    auto kept = keptCharacters(whole, mode, std::max(available - dots(text.styles.front()), 0.0));
    for (;;) {
        dropSpacesAtCut(whole, kept);
        result.paragraph = std::make_shared<TextParagraph const>(joined(whole, kept), styles, rightToLeft);
        result.last = result.paragraph->characters.size();
        result.width = result.paragraph->width(0, result.last);
        if (result.width <= available + tolerance || kept.head + kept.tail == 0) return result;
        shorten(kept);
    }
}

void Typesetter::placeLast() {
    auto line = std::move(lines.back());
    lines.pop_back();
    placeLine(line);
    lines.push_back(std::move(line));
}

} // namespace trelundo
