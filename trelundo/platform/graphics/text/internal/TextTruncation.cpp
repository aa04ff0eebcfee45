#include "trelundo/platform/graphics/text/internal/TextLines.h"

#include <algorithm>

namespace trelundo {

namespace {

constexpr char16_t ellipsis[] = u"\u2026";
constexpr double tolerance = 1e-6;

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

/// Finishes the last line, after which the text goes on at `next` or has ended.
void LineSetter::endLastLine(Place next) {
    auto& line = lines.back();
    auto const mode = limits_.lineBreakMode.value_or(line.style.lineBreakMode);
    auto const more = next.source < sources_.size();
    if (mode == NSLineBreakMode::byClipping && line.softEnd) {
        line.last = line.paragraph->characters.size();
        line.width = line.paragraph->width(line.first, line.last);
        line.softEnd = line.breaksWord = false;
        placeLast();
        truncated = true;
    } else if (more) {
        truncated = true;
        if (isTruncating(mode)) truncate(line, mode);
    }
}

/// The text from the start of a line to the end of its paragraph, or of everything with spaces for line ends.
StyledText LineSetter::remainder(SetLine const& line, bool toTheEnd) const {
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

void LineSetter::truncate(SetLine& line, NSLineBreakMode mode) {
    auto text = remainder(line, mode != NSLineBreakMode::byTruncatingTail);
    if (text.units.empty()) text.append(u" ", sources_[line.source].endStyle);
    line = shortened(line, text, mode);
    placeLast();
}

SetLine LineSetter::shortened(SetLine const& line, StyledText const& text, NSLineBreakMode mode) {
    auto const rightToLeft = line.paragraph->rightToLeft;
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
    result.softEnd = result.breaksWord = false;
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

void LineSetter::placeLast() {
    auto line = std::move(lines.back());
    lines.pop_back();
    placeLine(line);
    lines.push_back(std::move(line));
}

} // namespace trelundo
