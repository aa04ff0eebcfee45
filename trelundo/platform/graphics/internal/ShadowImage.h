#pragma once

#include "trelundo/platform/graphics/Canvas.h"

#include <QImage>

class QPainter;
class QPointF;

namespace trelundo {

/// A rounded rectangle that casts a shadow.
struct ShadowShape {
    double width; // device pixels
    double height;
    CornerRadii radii;
    double deviation;
    QRgb color;              // not premultiplied
    bool isTooLarge() const; // for a shadow
    bool operator==(ShadowShape const&) const = default;
};

/// A finished shadow: an image to be stretched so that one of its pixels covers `reduction` device pixels.
struct ShadowImage {
    QImage image;
    int margin = 0;    // image pixels around the shape
    int reduction = 1; // device pixels an image pixel

    /// With the top left corner of what casts it at `corner`; `scale` is device pixels a unit.
    void draw(QPainter& painter, QPointF const& corner, double scale) const;
};

/// The last few are kept: a screen draws the same ones again and again.
ShadowImage shadowOf(ShadowShape const& shape);
/// By the alpha of `source`. `deviation` in its pixels; `color` is not premultiplied.
ShadowImage shadowOf(QImage const& source, double deviation, QRgb color);

} // namespace trelundo
