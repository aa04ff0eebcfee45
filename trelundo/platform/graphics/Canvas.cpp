#include "trelundo/platform/graphics/Canvas.h"

#include "trelundo/platform/graphics/internal/CanvasState.h"
#include "trelundo/platform/graphics/internal/GraphicsSystem.h"

#include <QLinearGradient>

#include <cmath>

namespace trelundo {

namespace {

// Far outside every surface, yet safe to round and to add to.
constexpr double deviceLimit = 1e6;

// Distance of a cubic's control points that comes closest to a quarter of a circle, in radii.
constexpr double quarterCircle = 0.5522847498307936;

double deviceEdge(double value) { return std::clamp(value, -deviceLimit, deviceLimit); }

int roundedEdge(double value) { return static_cast<int>(std::lround(deviceEdge(value))); }

bool isWhole(double value) { return std::abs(value - std::round(value)) < 1.0 / 1024; }

bool isOnWholePixels(QRectF const& rect) {
    return isWhole(rect.left()) && isWhole(rect.top()) && isWhole(rect.right()) && isWhole(rect.bottom());
}

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

Canvas::State::State(Surface& target)
    : surface(target)
    , painter(&target.pixels().image)
    , clip(target.pixels().image.rect()) {
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing |
                           QPainter::SmoothPixmapTransform);
    painter.setPen(Qt::NoPen);
    painter.scale(surface.scale(), surface.scale());
}

Canvas::Canvas(Surface& surface) {
    startGraphics();
    state_ = std::make_unique<State>(surface);
}

Canvas::~Canvas() = default;

double Canvas::scale() const { return state_->surface.scale(); }

void Canvas::save() {
    state_->painter.save();
    state_->saved.push_back(state_->clip);
}

void Canvas::restore() {
    if (state_->saved.empty()) return;
    state_->painter.restore();
    state_->clip = state_->saved.back();
    state_->saved.pop_back();
}

void Canvas::concatenate(CGAffineTransform const& t) {
    state_->painter.setWorldTransform(QTransform(t.a, t.b, t.c, t.d, t.tx, t.ty), true);
}

void Canvas::clip(CGRect const& rect) {
    auto const area = isDrawable(rect) ? toQRect(rect) : QRectF();
    auto const pixels = devicePixels(state_->painter, area);
    state_->clip = area.isEmpty() ? QRect(0, 0, 0, 0) : state_->clip & pixels;
    if (state_->painter.worldTransform().type() > QTransform::TxScale && !area.isEmpty()) {
        state_->painter.setClipRect(area, Qt::IntersectClip);
        return;
    }
    DevicePixels const device(state_->painter);
    state_->painter.setClipRect(state_->clip, Qt::IntersectClip);
}

CGRect Canvas::clipBounds() const {
    auto const& clip = state_->clip;
    if (clip.isEmpty()) return CGRect::null();
    auto const bounds = state_->painter.worldTransform().inverted().mapRect(QRectF(clip));
    return {bounds.x(), bounds.y(), bounds.width(), bounds.height()};
}

void Canvas::multiplyOpacity(double opacity) {
    state_->painter.setOpacity(state_->painter.opacity() * (opacity > 0 ? std::min(opacity, 1.0) : 0.0));
}

void Canvas::clear(CGRect const& rect) {
    if (!isDrawable(rect)) return;
    auto const pixels = devicePixels(state_->painter, toQRect(rect));
    DevicePixels const device(state_->painter);
    auto const mode = state_->painter.compositionMode();
    state_->painter.setCompositionMode(QPainter::CompositionMode_Clear);
    state_->painter.fillRect(pixels, Qt::transparent);
    state_->painter.setCompositionMode(mode);
}

void Canvas::fill(CGRect const& rect, CGColor const& color) {
    if (!isDrawable(rect) || colorByte(color.alpha) == 0) return;
    auto const area = toQRect(rect);
    auto const& transform = state_->painter.worldTransform();
    if (transform.type() > QTransform::TxScale || !isOnWholePixels(transform.mapRect(area))) {
        state_->painter.fillRect(area, toQColor(color));
        return;
    }
    auto const pixels = devicePixels(state_->painter, area) & state_->clip;
    DevicePixels const device(state_->painter);
    state_->painter.fillRect(pixels, toQColor(color));
}

void Canvas::fillRounded(CGRect const& rect, CornerRadii const& radii, CGColor const& color) {
    if (radii.isZero()) return fill(rect, color);
    if (!isDrawable(rect) || colorByte(color.alpha) == 0) return;
    state_->painter.fillPath(roundedPath(toQRect(rect), radii), toQColor(color));
}

void Canvas::strokeRounded(CGRect const& rect, CornerRadii const& radii, double width, CGColor const& color) {
    if (!isDrawable(rect) || !(width > 0) || colorByte(color.alpha) == 0) return;
    auto path = roundedPath(toQRect(rect), radii);
    if (width * 2 < std::min(rect.width(), rect.height())) {
        // The inner edge follows the radius that was drawn, not the one that was asked for.
        auto const most = std::min(rect.width(), rect.height()) / 2;
        auto const inner = [&](double radius) { return std::max(0.0, std::min(radius, most) - width); };
        path.addPath(roundedPath(toQRect(rect.insetBy(width, width)),
                                 {inner(radii.topLeft), inner(radii.topRight), inner(radii.bottomLeft),
                                  inner(radii.bottomRight)}));
        path.setFillRule(Qt::OddEvenFill);
    }
    state_->painter.fillPath(path, toQColor(color));
}

namespace {

/// Stops for the painter, which keeps one colour a place: several stops at one place become its first colour
/// just before and its last colour at it.
QGradientStops painterStops(std::span<GradientStop const> stops) {
    constexpr double step = 1e-6;
    QGradientStops result;
    for (auto const& stop : stops) {
        auto place = std::isnan(stop.location) ? 0 : std::clamp(stop.location, 0.0, 1.0);
        if (!result.empty()) place = std::max(place, result.back().first);
        auto const count = result.size();
        if (count > 1 && result[count - 2].first >= place - step) result.pop_back();
        if (!result.empty() && result.back().first >= place) result.back().first = place - step;
        result.append({place, toQColor(stop.color)});
    }
    // A stop at 0 moved to below it is drawn as if it were at 0, where its successor hides it.
    if (result.size() > 1 && result.front().first < 0) result.pop_front();
    return result;
}

} // namespace

void Canvas::fillGradient(CGRect const& rect, CornerRadii const& radii, std::span<GradientStop const> stops,
                          CGPoint start, CGPoint end) {
    if (!isDrawable(rect) || stops.empty()) return;
    // Without a direction everything lies beyond the last stop.
    if (start == end || stops.size() == 1) return fillRounded(rect, radii, stops.back().color);
    auto const area = toQRect(rect);
    auto const place = [&](CGPoint unit) {
        return QPointF(area.x() + unit.x * area.width(), area.y() + unit.y * area.height());
    };
    QLinearGradient gradient(place(start), place(end));
    gradient.setInterpolationMode(QGradient::ColorInterpolation);
    gradient.setStops(painterStops(stops));
    if (radii.isZero())
        state_->painter.fillRect(area, gradient);
    else
        state_->painter.fillPath(roundedPath(area, radii), gradient);
}

void Canvas::fillPolygon(std::span<CGPoint const> points, CGColor const& color) {
    if (points.size() < 3) return;
    QPainterPath path;
    path.moveTo(points[0].x, points[0].y);
    for (auto const& point : points.subspan(1)) path.lineTo(point.x, point.y);
    path.closeSubpath();
    path.setFillRule(Qt::WindingFill);
    state_->painter.fillPath(path, toQColor(color));
}

} // namespace trelundo
