#include "trelundo/platform/graphics/text/internal/ThickenedGlyph.h"

#include "trelundo/platform/graphics/text/internal/FontLibrary.h"

#include <QPainterPath>
#include <QPainterPathStroker>

#include <cstddef>
#include <map>
#include <tuple>

namespace trelundo {

namespace {

// What the strokes of sans-serif families gain between regular and bold, for one unit of weight.
constexpr double emsByWeight = 0.018 / 100;

QPainterPath thickened(QPainterPath const& outline, double width) {
    QPainterPathStroker pen;
    pen.setWidth(width);
    pen.setJoinStyle(Qt::MiterJoin);
    return outline.united(pen.createStroke(outline));
}

} // namespace

double missingThickness(FontFace const& face, int weight) {
    return face.isEmoji || face.weight >= weight ? 0 : (weight - face.weight) * emsByWeight;
}

QPainterPath const& thickenedGlyph(FontFace& face, quint32 glyph, double ems) {
    // Several screens' worth of Chinese characters.
    constexpr std::size_t most = 4096;
    using Key = std::tuple<FontFace const*, quint32, double>;
    static auto& outlines = *new std::map<Key, QPainterPath>;
    if (outlines.size() >= most) outlines.clear();
    auto const [entry, isNew] = outlines.try_emplace({&face, glyph, ems});
    if (isNew) {
        auto const font = FontLibrary::shared().fontFor(face, FontLibrary::referenceSize);
        entry->second = thickened(font.pathForGlyph(glyph), ems * FontLibrary::referenceSize);
    }
    return entry->second;
}

} // namespace trelundo
