#include "trelundo/platform/graphics/internal/PainterGeometry.h"

#include <algorithm>
#include <cmath>

namespace trelundo {

namespace {

// Far outside every surface, yet safe to round and to add to.
constexpr double deviceLimit = 1e6;

// Distance of a cubic's control points that comes closest to a quarter of a circle, in radii.
constexpr double quarterCircle = 0.5522847498307936;

double deviceEdge(double value) { return std::clamp(value, -deviceLimit, deviceLimit); }

int roundedEdge(double value) { return static_cast<int>(std::lround(deviceEdge(value))); }

} // namespace

bool isDrawable(CGRect const& rect) {
    return std::isfinite(rect.minX()) && std::isfinite(rect.minY()) && std::isfinite(rect.maxX()) &&
           std::isfinite(rect.maxY()) && rect.width() > 0 && rect.height() > 0;
}

QRect devicePixels(QPainter const& painter, QRectF const& rect) {
    auto const mapped = painter.worldTransform().mapRect(rect);
    auto const left = roundedEdge(mapped.left());
    auto const top = roundedEdge(mapped.top());
    return {left, top, roundedEdge(mapped.right()) - left, roundedEdge(mapped.bottom()) - top};
}

double deviceScale(QPainter const& painter) {
    return std::sqrt(std::abs(painter.worldTransform().determinant()));
}

CornerRadii scaledRadii(CornerRadii const& radii, double factor) {
    return {radii.topLeft * factor, radii.topRight * factor, radii.bottomLeft * factor,
            radii.bottomRight * factor};
}

QPainterPath roundedPath(QRectF const& rect, CornerRadii const& radii) {
    auto const most = std::min(rect.width(), rect.height()) / 2;
    auto const limited = [&](double radius) {
        return std::clamp(std::isnan(radius) ? 0 : radius, 0.0, most);
    };
    QPainterPath path;
    QPointF const corners[] = {rect.topRight(), rect.bottomRight(), rect.bottomLeft(), rect.topLeft()};
    QPointF const arriving[] = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}};
    double const radius[] = {limited(radii.topRight), limited(radii.bottomRight), limited(radii.bottomLeft),
                             limited(radii.topLeft)};
    path.moveTo(rect.left() + radius[3], rect.top());
    for (int i = 0; i < 4; ++i) {
        auto const before = arriving[i] * radius[i];
        auto const after = arriving[(i + 1) % 4] * radius[i];
        path.lineTo(corners[i] - before);
        if (radius[i] > 0)
            path.cubicTo(corners[i] - before * (1 - quarterCircle), corners[i] + after * (1 - quarterCircle),
                         corners[i] + after);
    }
    path.closeSubpath();
    return path;
}

} // namespace trelundo
