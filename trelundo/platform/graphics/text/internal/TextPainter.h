#pragma once

#include "trelundo/platform/graphics/Canvas.h"
#include "trelundo/platform/graphics/text/internal/TextLine.h"

#include <QPointF>

#include <span>
#include <vector>

namespace trelundo {

/// Draws set lines: backgrounds, then underlines, glyphs and strike-through.
class TextPainter {
public:
    TextPainter(Canvas& canvas, std::vector<ScaledStyle> const& styles)
        : canvas_(canvas)
        , styles_(styles) {}

    /// `origin` is the top left corner of the text, `width` what lines are aligned within.
    void draw(TextLine const& line, CGPoint origin, double width);

private:
    /// A character at its place on the line.
    struct Placed {
        TextCharacter const* character;
        double left;
        double width;
    };
    /// Neighbours of one style.
    struct Stretch {
        std::size_t style;
        double left;
        double right;
        bool isSpace;
        std::span<Placed const> characters;
    };
    /// What a rule covers from left to right, points.
    struct Piece {
        double left;
        double right;
    };

    std::vector<Placed> place(TextLine const& line, double left, double width) const;
    double spaceForJustifying(TextLine const& line, double width) const;
    std::vector<Stretch> stretches(std::vector<Placed> const& placed, bool splitAtSpaces) const;
    void drawBackgrounds(std::vector<Placed> const& placed, double top, double height);
    void drawGlyphs(std::vector<Placed> const& placed, double baseline);
    void drawGlyphRun(TextCharacter const& head, std::vector<quint32>& indexes, std::vector<QPointF>& places);
    void drawThickened(TextCharacter const& head, double ems, std::vector<quint32> const& indexes,
                       std::vector<QPointF> const& places);
    enum class Decoration { underline, strikethrough };
    void drawDecorations(std::vector<Placed> const& placed, double baseline, Decoration decoration);
    template <class Visit> void forEachGlyph(Placed const& placed, double baseline, Visit const& visit) const;
    void drawRule(Stretch const& stretch, double baseline, Decoration decoration);
    std::vector<Piece> crossings(Stretch const& stretch, double baseline, CGRect band) const;
    std::vector<Piece> clearPieces(Stretch const& stretch, double baseline, CGRect rule) const;
    void drawDashes(double left, double right, double top, double thickness, int pattern,
                    CGColor const& color);

    Canvas& canvas_;
    std::vector<ScaledStyle> const& styles_;
};

} // namespace trelundo
