#include "trelundo/platform/graphics/text/internal/TextPainter.h"

#include "trelundo/platform/graphics/internal/CanvasState.h"
#include "trelundo/platform/graphics/internal/PainterGeometry.h"
#include "trelundo/platform/graphics/text/internal/ThickenedGlyph.h"
#include "trelundo/platform/graphics/text/internal/UnicodeAlgorithms.h"

#include <QGlyphRun>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

namespace trelundo {

namespace {

constexpr int lineStyleBits = 0x0f;
constexpr int patternBits = 0x700;
// Ems from the baseline to an underline below East Asian characters, which would leave nothing of a higher
// one.
constexpr double squareDepth = 0.2;

bool hasBits(NSUnderlineStyle style, NSUnderlineStyle bits) {
    return (static_cast<int>(style) & static_cast<int>(bits)) == static_cast<int>(bits);
}

NSTextAlignment physicalAlignment(TextLine const& line) {
    auto const alignment = line.style.alignment;
    if (alignment != NSTextAlignment::natural && alignment != NSTextAlignment::justified) return alignment;
    return line.paragraph->isRightToLeft ? NSTextAlignment::right : NSTextAlignment::left;
}

double leftEdge(TextLine const& line, double width) {
    auto const start = line.paragraph->isRightToLeft ? line.trailing : line.leading;
    auto const end = width - (line.paragraph->isRightToLeft ? line.leading : line.trailing);
    switch (physicalAlignment(line)) {
    case NSTextAlignment::center:
        return (start + end - line.width) / 2;
    case NSTextAlignment::right:
        return end - line.width;
    default:
        return start;
    }
}

/// Spaces at the end of a line take no part in reordering: they stand at the paragraph's end.
std::vector<std::uint8_t> lineLevels(TextLine const& line, std::size_t last) {
    std::vector<std::uint8_t> levels;
    levels.reserve(last - line.first);
    for (auto i = line.first; i < last; ++i) levels.push_back(line.paragraph->characters[i].level);
    for (auto i = last; i > line.first && line.paragraph->characters[i - 1].isSpace; --i)
        levels[i - 1 - line.first] = line.paragraph->isRightToLeft ? 1 : 0;
    return levels;
}

/// Spaces at which the text goes on in the next line hang outside and are not drawn.
std::size_t drawnEnd(TextLine const& line) {
    auto last = line.last;
    while (line.hasSoftEnd && last > line.first && line.paragraph->characters[last - 1].isSpace) --last;
    return last;
}

} // namespace

void TextPainter::draw(TextLine const& line, CGPoint origin, double width) {
    auto const placed = place(line, origin.x + leftEdge(line, width), width);
    auto const baseline = origin.y + line.baseline;
    canvas_.state().painter.save();
    drawBackgrounds(placed, origin.y + line.top, line.height);
    drawDecorations(placed, baseline, Decoration::underline);
    drawGlyphs(placed, baseline);
    drawDecorations(placed, baseline, Decoration::strikethrough);
    canvas_.state().painter.restore();
}

std::vector<TextPainter::Placed> TextPainter::place(TextLine const& line, double left, double width) const {
    auto const extra = spaceForJustifying(line, width);
    auto const levels = lineLevels(line, drawnEnd(line));
    std::vector<Placed> placed;
    placed.reserve(levels.size());
    for (auto const index : visualOrder(levels)) {
        auto const& character = line.paragraph->characters[line.first + static_cast<std::size_t>(index)];
        auto const advance = character.advance + (character.isSpace ? extra : 0);
        placed.push_back({&character, left, advance});
        left += advance;
    }
    return placed;
}

double TextPainter::spaceForJustifying(TextLine const& line, double width) const {
    if (line.style.alignment != NSTextAlignment::justified || !line.hasSoftEnd) return 0;
    auto const* characters = line.paragraph->characters.data();
    auto const spaces = std::count_if(characters + line.first, characters + drawnEnd(line),
                                      [](TextCharacter const& character) { return character.isSpace; });
    auto const missing = width - line.leading - line.trailing - line.width;
    return spaces > 0 && missing > 0 ? missing / static_cast<double>(spaces) : 0;
}

std::vector<TextPainter::Stretch> TextPainter::stretches(std::vector<Placed> const& placed,
                                                         bool splitAtSpaces) const {
    std::vector<Stretch> result;
    for (auto const& one : placed) {
        auto const isSpace = splitAtSpaces && one.character->isSpace;
        if (result.empty() || result.back().style != one.character->style || result.back().isSpace != isSpace)
            result.push_back({one.character->style, one.left, one.left, isSpace, {&one, 0}});
        auto& stretch = result.back();
        stretch.right = one.left + one.width;
        stretch.characters = {stretch.characters.data(), stretch.characters.size() + 1};
    }
    return result;
}

void TextPainter::drawBackgrounds(std::vector<Placed> const& placed, double top, double height) {
    auto const any =
        std::ranges::any_of(styles_, [](auto const& style) { return style.run.background.has_value(); });
    if (!any) return;
    for (auto const& stretch : stretches(placed, false))
        if (auto const& color = styles_[stretch.style].run.background)
            canvas_.fill({stretch.left, top, stretch.right - stretch.left, height}, *color);
}

void TextPainter::drawGlyphs(std::vector<Placed> const& placed, double baseline) {
    TextCharacter const* head = nullptr;
    std::vector<quint32> indexes;
    std::vector<QPointF> places;
    for (auto const& one : placed) {
        auto const* character = one.character;
        if (head && (character->style != head->style || character->face != head->face)) {
            drawGlyphRun(*head, indexes, places);
            head = nullptr;
        }
        if (!head) head = character;
        forEachGlyph(one, baseline, [&](quint32 index, QPointF place) {
            indexes.push_back(index);
            places.push_back(place);
        });
    }
    if (head) drawGlyphRun(*head, indexes, places);
}

/// Visits index and place of each glyph of a character.
template <class Visit>
void TextPainter::forEachGlyph(Placed const& placed, double baseline, Visit const& visit) const {
    auto const& character = *placed.character;
    auto const& style = styles_[character.style];
    auto const size = style.font.size;
    auto const& shaped = character.word->characters[character.indexInWord];
    for (auto i = shaped.firstGlyph; i < shaped.firstGlyph + shaped.glyphCount; ++i) {
        auto const& glyph = character.word->glyphs[i];
        visit(glyph.index,
              QPointF(placed.left + glyph.x * size, baseline - style.run.baselineOffset + glyph.y * size));
    }
}

void TextPainter::drawGlyphRun(TextCharacter const& head, std::vector<quint32>& indexes,
                               std::vector<QPointF>& places) {
    auto const& style = styles_[head.style];
    auto const font = FontLibrary::shared().fontFor(*head.face, style.font.size);
    auto const missing = missingThickness(*head.face, style.font.weight);
    if (!indexes.empty() && style.font.size > 0 && font.isValid() && missing > 0) {
        drawThickened(head, missing, indexes, places);
    } else if (!indexes.empty() && style.font.size > 0 && font.isValid()) {
        QGlyphRun run;
        run.setRawFont(font);
        run.setGlyphIndexes(QList<quint32>(indexes.begin(), indexes.end()));
        run.setPositions(QList<QPointF>(places.begin(), places.end()));
        canvas_.state().painter.setPen(toQColor(style.run.color));
        canvas_.state().painter.drawGlyphRun(QPointF(), run);
    }
    indexes.clear();
    places.clear();
}

void TextPainter::drawThickened(TextCharacter const& head, double ems, std::vector<quint32> const& indexes,
                                std::vector<QPointF> const& places) {
    auto const& style = styles_[head.style];
    auto const scale = style.font.size / FontLibrary::referenceSize;
    QPainterPath text;
    for (std::size_t i = 0; i < indexes.size(); ++i)
        text.addPath(QTransform::fromScale(scale, scale)
                         .map(thickenedGlyph(*head.face, indexes[i], ems))
                         .translated(places[i]));
    text.setFillRule(Qt::WindingFill); // joined letters overlap
    canvas_.state().painter.fillPath(text, toQColor(style.run.color));
}

void TextPainter::drawDecorations(std::vector<Placed> const& placed, double baseline, Decoration decoration) {
    auto const below = decoration == Decoration::underline;
    auto const styleOf = [&](ScaledStyle const& style) {
        return below ? style.run.underline : style.run.strikethrough;
    };
    auto const drawn = [&](ScaledStyle const& style) { return styleOf(style) != NSUnderlineStyle::none; };
    if (std::ranges::none_of(styles_, drawn)) return;
    auto const byWord = std::ranges::any_of(
        styles_, [&](auto const& style) { return hasBits(styleOf(style), NSUnderlineStyle::byWord); });
    for (auto const& stretch : stretches(placed, byWord)) {
        auto const& style = styles_[stretch.style];
        if (!drawn(style) || (stretch.isSpace && hasBits(styleOf(style), NSUnderlineStyle::byWord))) continue;
        drawRule(stretch, baseline, decoration);
    }
}

/// Lines are whole device pixels thick and lie on whole pixels, as far as the transform is upright.
void TextPainter::drawRule(Stretch const& stretch, double baseline, Decoration decoration) {
    auto const& transform = canvas_.state().painter.worldTransform();
    auto const scale = deviceScale(canvas_.state().painter);
    if (!(scale > 0)) return;
    auto const below = decoration == Decoration::underline;
    auto const& scaled = styles_[stretch.style];
    auto const style = below ? scaled.run.underline : scaled.run.strikethrough;
    auto const& color = below ? scaled.run.underlineColor : scaled.run.strikethroughColor;
    auto const raised = baseline - scaled.run.baselineOffset;
    auto const squares = std::ranges::any_of(
        stretch.characters, [](Placed const& one) { return one.character->face->isEastAsian; });
    auto const depth = scaled.font.size * (squares ? squareDepth : 1.0 / 9);
    auto const middle = below ? raised + depth : raised - scaled.font.xHeight() / 2;
    auto const isThick =
        (static_cast<int>(style) & lineStyleBits) == static_cast<int>(NSUnderlineStyle::thick);
    auto const wished = scaled.font.size / 18 * (isThick ? 2 : 1);
    auto const thickness = std::max(1.0, std::round(wished * scale)) / scale;
    auto const aligned = [&](double place, double shift) {
        return (std::round(place * scale + shift) - shift) / scale;
    };
    auto const count = hasBits(style, NSUnderlineStyle::doubleLine) ? 2 : 1;
    auto const top = aligned(middle - thickness / 2 - (count - 1) * thickness, transform.dy());
    std::vector<Piece> pieces{{stretch.left, stretch.right}};
    if (below && !squares)
        pieces = clearPieces(stretch, baseline,
                             {stretch.left, top, stretch.right - stretch.left, (2 * count - 1) * thickness});
    for (auto const& [left, right] : pieces)
        for (int i = 0; i < count; ++i)
            drawDashes(aligned(left, transform.dx()), aligned(right, transform.dx()), top + 2 * i * thickness,
                       thickness, static_cast<int>(style) & patternBits, color.value_or(scaled.run.color));
}

/// Where glyphs of a stretch reach into `band`.
std::vector<TextPainter::Piece> TextPainter::crossings(Stretch const& stretch, double baseline,
                                                       CGRect band) const {
    QRectF const area(band.minX(), band.minY(), band.width(), band.height());
    std::vector<Piece> found;
    for (auto const& one : stretch.characters) {
        auto const font =
            FontLibrary::shared().fontFor(*one.character->face, styles_[stretch.style].font.size);
        forEachGlyph(one, baseline, [&](quint32 index, QPointF place) {
            auto const glyph = font.pathForGlyph(index).translated(place);
            if (!glyph.boundingRect().intersects(area)) return;
            QPainterPath wide;
            wide.addRect(area.adjusted(-area.height(), 0, area.height(), 0));
            auto const crossing = glyph.intersected(wide).boundingRect();
            if (!crossing.isEmpty()) found.push_back({crossing.left(), crossing.right()});
        });
    }
    std::ranges::sort(found, {}, &Piece::left);
    return found;
}

/// What is left of an underline at some distance from the glyphs that reach below the baseline.
std::vector<TextPainter::Piece> TextPainter::clearPieces(Stretch const& stretch, double baseline,
                                                         CGRect rule) const {
    double const distance = styles_[stretch.style].font.size / 16;
    std::vector<Piece> pieces;
    double left = rule.minX();
    // Crumbs between two letters would only look like dirt.
    auto const keep = [&](double right) {
        if (right - left > distance) pieces.push_back({left, right});
    };
    for (auto const& [from, to] : crossings(stretch, baseline, rule.insetBy(0, -distance / 2))) {
        keep(from - distance);
        left = std::max(left, to + distance);
    }
    keep(rule.maxX());
    return pieces;
}

void TextPainter::drawDashes(double left, double right, double top, double thickness, int pattern,
                             CGColor const& color) {
    // Lengths in thicknesses: drawn, left out, drawn and so on.
    static constexpr std::array<double, 2> dot{1, 1};
    static constexpr std::array<double, 2> dash{4, 2};
    static constexpr std::array<double, 4> dashDot{4, 2, 1, 2};
    static constexpr std::array<double, 6> dashDotDot{4, 2, 1, 2, 1, 2};
    std::span<double const> lengths;
    switch (pattern) {
    case static_cast<int>(NSUnderlineStyle::patternDot):
        lengths = dot;
        break;
    case static_cast<int>(NSUnderlineStyle::patternDash):
        lengths = dash;
        break;
    case static_cast<int>(NSUnderlineStyle::patternDashDot):
        lengths = dashDot;
        break;
    case static_cast<int>(NSUnderlineStyle::patternDashDotDot):
        lengths = dashDotDot;
        break;
    default:
        return canvas_.fill({left, top, right - left, thickness}, color);
    }
    for (std::size_t i = 0; left < right; ++i) {
        auto const length = lengths[i % lengths.size()] * thickness;
        if (i % 2 == 0) canvas_.fill({left, top, std::min(length, right - left), thickness}, color);
        left += length;
    }
}

} // namespace trelundo
