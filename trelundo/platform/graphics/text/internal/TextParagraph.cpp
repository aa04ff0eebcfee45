#include "trelundo/platform/graphics/text/internal/TextParagraph.h"

#include "trelundo/platform/graphics/text/internal/FaceChoice.h"
#include "trelundo/platform/graphics/text/internal/UnicodeAlgorithms.h"

#include <unicode/uchar.h>
#include <unicode/uscript.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace trelundo {

namespace {

// Longer words are shaped in pieces, so that the time stays in proportion to the text.
constexpr std::size_t longestWord = 256;

struct TrackingStep {
    double size;
    double thousandths; // of an em
};

constexpr std::array trackingSteps{
    TrackingStep{8, 26},   TrackingStep{9, 19},   TrackingStep{10, 12},  TrackingStep{11, 6},
    TrackingStep{12, 0},   TrackingStep{13, -6},  TrackingStep{14, -11}, TrackingStep{15, -16},
    TrackingStep{16, -20}, TrackingStep{17, -26}, TrackingStep{18, -25}, TrackingStep{19, -24},
    TrackingStep{20, -23}, TrackingStep{24, 3},   TrackingStep{28, 14},  TrackingStep{34, 12},
    TrackingStep{36, 10},  TrackingStep{40, 10},  TrackingStep{58, 6},   TrackingStep{80, 0},
};

double positive(double value) { return value > 0 && std::isfinite(value) ? value : 0; }
double finite(double value) { return std::isfinite(value) ? value : 0; }

/// What is shaped in place of a unit: a tab is a space, and other control characters show nothing.
char16_t shown(char16_t unit) {
    constexpr char16_t nothing = 0x200b;
    if (unit == u'\t') return u' ';
    return unit < 0x20 || unit == 0x7f ? nothing : unit;
}

bool isSpace(char16_t unit) {
    constexpr char16_t noBreak[] = {0xa0, 0x202f, 0x2007};
    return u_isUWhiteSpace(unit) && std::ranges::find(noBreak, unit) == std::end(noBreak);
}

/// Whether the letters of a script are joined, by strokes or by a line along their heads, so that a gap after
/// any of them would tear words apart.
bool isJoined(std::u16string_view text, std::size_t place) {
    char32_t letter = 0;
    U16_GET(text, 0, place, text.size(), letter);
    UErrorCode status = U_ZERO_ERROR;
    switch (uscript_getScript(static_cast<UChar32>(letter), &status)) {
    case USCRIPT_ADLAM:
    case USCRIPT_ARABIC:
    case USCRIPT_BENGALI:
    case USCRIPT_DEVANAGARI:
    case USCRIPT_GURMUKHI:
    case USCRIPT_HANIFI_ROHINGYA:
    case USCRIPT_MANDAIC:
    case USCRIPT_MONGOLIAN:
    case USCRIPT_NKO:
    case USCRIPT_PHAGS_PA:
    case USCRIPT_SYRIAC:
        return true;
    default:
        return false;
    }
}

} // namespace

double systemTracking(double size) {
    auto const above =
        std::ranges::find_if(trackingSteps, [&](auto const& step) { return step.size >= size; });
    if (above == trackingSteps.end()) return 0;
    if (above == trackingSteps.begin()) return above->thousandths * size / 1000;
    auto const& below = *(above - 1);
    auto const share = (size - below.size) / (above->size - below.size);
    return (below.thousandths + (above->thousandths - below.thousandths) * share) * size / 1000;
}

ScaledStyle::ScaledStyle(TextRun original, double scale)
    : run(std::move(original))
    , font(run.font)
    , kern(finite(run.kern.value_or(0) * scale))
    , usesKerning(run.kern != 0.0) {
    run.text.clear();
    font.size = positive(run.font.size * scale);
    tracking = systemTracking(font.size);
    run.baselineOffset = finite(run.baselineOffset * scale);
    ascent = font.ascender() + run.baselineOffset;
    descent = -font.descender() - run.baselineOffset;
}

void StyledText::append(std::u16string_view more, std::size_t style) {
    units += more;
    styles.resize(units.size(), style);
}

StyledText StyledText::part(std::size_t start, std::size_t end) const {
    StyledText result;
    result.units = units.substr(start, end - start);
    result.styles.assign(styles.begin() + static_cast<std::ptrdiff_t>(start),
                         styles.begin() + static_cast<std::ptrdiff_t>(end));
    return result;
}

TextParagraph::TextParagraph(StyledText source, std::vector<ScaledStyle> const& styles, bool rightToLeft)
    : text(std::move(source))
    , isRightToLeft(rightToLeft) {
    std::ranges::transform(text.units, text.units.begin(), shown);
    splitCharacters(styles);
    shape(styles);
}

std::size_t TextParagraph::end(std::size_t character) const {
    return character + 1 < characters.size() ? characters[character + 1].start : text.units.size();
}

double TextParagraph::width(std::size_t first, std::size_t last) const {
    double sum = 0;
    for (auto i = first; i < last; ++i) sum += characters[i].advance;
    return sum;
}

void TextParagraph::splitCharacters(std::vector<ScaledStyle> const& styles) {
    auto const ends = characterEnds(text.units);
    auto const breaks = lineBreaks(text.units);
    auto const levels = embeddingLevels(text.units, isRightToLeft);
    characters.reserve(ends.size());
    std::size_t start = 0;
    for (auto const unsignedEnd : ends) {
        auto const stop = static_cast<std::size_t>(unsignedEnd);
        characters.push_back({.start = start,
                              .style = text.styles[start],
                              .face = nullptr,
                              .word = nullptr,
                              .indexInWord = 0,
                              .advance = 0,
                              .level = levels[start],
                              .isSpace = isSpace(text.units[start]),
                              .mayBreakAfter = breaks.allowed[stop],
                              .breaksWellAfter = breaks.preferred[stop]});
        start = stop;
    }
    chooseFacesByStyle(styles);
}

std::u16string_view TextParagraph::cluster(std::size_t character) const {
    auto const start = characters[character].start;
    return std::u16string_view(text.units).substr(start, end(character) - start);
}

void TextParagraph::chooseFacesByStyle(std::vector<ScaledStyle> const& styles) {
    std::vector<std::u16string_view> clusters;
    for (std::size_t first = 0; first < characters.size(); first += clusters.size()) {
        auto const style = characters[first].style;
        clusters.clear();
        for (auto i = first; i < characters.size() && characters[i].style == style; ++i)
            clusters.push_back(cluster(i));
        auto const& font = styles[style].font;
        // A shrunk headline keeps its design, or it would have to shrink further for the wider one.
        auto& preferred =
            FontLibrary::shared().systemFace(font.weight, font.isItalic, styles[style].run.font.size);
        auto const faces = chooseFaces(clusters, preferred);
        for (std::size_t i = 0; i < faces.size(); ++i) characters[first + i].face = faces[i];
    }
}

std::size_t TextParagraph::wordEnd(std::size_t first) const {
    auto const& head = characters[first];
    auto last = first + 1;
    for (; last < characters.size() && last - first < longestWord; ++last) {
        auto const& next = characters[last];
        if (next.style != head.style || next.face != head.face || next.level != head.level) break;
        if (characters[last - 1].isSpace && !next.isSpace) break;
    }
    return last;
}

void TextParagraph::shape(std::vector<ScaledStyle> const& styles) {
    for (std::size_t first = 0; first < characters.size();) {
        auto const last = wordEnd(first);
        shapeCharacters(first, last, styles);
        first = last;
    }
}

void TextParagraph::shapeCharacters(std::size_t first, std::size_t last,
                                    std::vector<ScaledStyle> const& styles) {
    auto const& head = characters[first];
    auto const& style = styles[head.style];
    WordToShape toShape{.text = {},
                        .face = head.face,
                        .usesKerning = style.usesKerning,
                        .isRightToLeft = head.level % 2 == 1};
    std::vector<int> ends;
    ends.reserve(last - first);
    for (auto i = first; i < last; ++i) {
        appendShapeable(*head.face, cluster(i), toShape.text);
        ends.push_back(static_cast<int>(toShape.text.size()));
    }
    auto const word = shapeWord(toShape, ends);
    auto const extra = style.kern + (head.face->isSystem ? style.tracking : 0);
    for (auto i = first; i < last; ++i) {
        auto& character = characters[i];
        character.word = word;
        character.indexInWord = i - first;
        auto const ems = word->characters[i - first].advance;
        auto const gap = isJoined(text.units, character.start) ? 0 : extra;
        character.advance = ems > 0 ? ems * style.font.size + gap : 0;
    }
}

} // namespace trelundo
