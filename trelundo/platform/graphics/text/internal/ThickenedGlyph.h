#pragma once

#include "trelundo/platform/graphics/text/internal/FontLibrary.h"

#include <QPainterPath>

namespace trelundo {

/// By how many ems the strokes of `face` are thinner than those of `weight`; 0 for a face that is heavy
/// enough and for pictures. A fall-back family seldom has the weights between regular and bold.
double missingThickness(FontFace const& face, int weight);

/// The outline of a glyph at the reference size with strokes thicker by `ems`, baseline at 0; y grows
/// downward. Its advance stays, so letters that join still meet. Outlines are kept for the next time.
QPainterPath const& thickenedGlyph(FontFace& face, quint32 glyph, double ems);

} // namespace trelundo
