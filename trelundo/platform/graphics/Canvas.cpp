#include "trelundo/platform/graphics/Canvas.h"

#include "trelundo/platform/graphics/Surface.h"
#include "trelundo/platform/graphics/internal/BackdropFilter.h"
#include "trelundo/platform/graphics/internal/BoxBlur.h"
#include "trelundo/platform/graphics/internal/CanvasState.h"
#include "trelundo/platform/graphics/internal/GraphicsSystem.h"
#include "trelundo/platform/graphics/internal/PainterGeometry.h"
#include "trelundo/platform/graphics/internal/PictureState.h"
#include "trelundo/platform/graphics/internal/ShadowImage.h"
#include "trelundo/platform/graphics/internal/SurfacePixels.h"

#include <QLinearGradient>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace trelundo {

namespace {

// Above this many pixels a scaled picture is not made; the painter scales what is visible instead.
constexpr double maximumRenditionPixels = 16e6;

bool isWhole(double value) { return std::abs(value - std::round(value)) < 1.0 / 1024; }

bool isOnWholePixels(QRectF const& rect) {
    return isWhole(rect.left()) && isWhole(rect.top()) && isWhole(rect.right()) && isWhole(rect.bottom());
}

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

/// Fills the rounded `clip`, in device pixels, with `image` placed on `target`.
void fillWithTexture(QPainter& painter, QImage const& image, QRect const& target, QPainterPath const& clip) {
    QBrush brush(image);
    brush.setTransform(QTransform::fromTranslate(target.x(), target.y()));
    painter.save();
    // The texture repeats outside its place.
    painter.setClipRect(target, Qt::IntersectClip);
    painter.fillPath(clip, brush);
    painter.restore();
}

void drawUpright(QPainter& painter, QImage const& image, QRect const& target, QRectF const& clip,
                 CornerRadii const& radii) {
    auto const scale = deviceScale(painter);
    auto const clipPixels = devicePixels(painter, clip);
    DevicePixels const device(painter);
    if (!radii.isZero()) {
        fillWithTexture(painter, image, target, roundedPath(clipPixels, scaledRadii(radii, scale)));
        return;
    }
    auto const visible = target & clipPixels;
    if (!visible.isEmpty())
        painter.drawImage(visible.topLeft(), image, visible.translated(-target.topLeft()));
}

/// With a rotation, or magnified beyond what is worth keeping: texture and edges go through the transform.
void drawTransformed(QPainter& painter, QImage const& image, QRectF const& rect, QRectF const& clip,
                     CornerRadii const& radii) {
    auto const visible = rect & clip;
    if (visible.isEmpty()) return;
    QBrush brush(image);
    brush.setTransform(QTransform::fromScale(rect.width() / image.width(), rect.height() / image.height()) *
                       QTransform::fromTranslate(rect.x(), rect.y()));
    auto path = roundedPath(clip, radii);
    if (visible != clip) {
        QPainterPath area;
        area.addRect(visible);
        path = path.intersected(area);
    }
    painter.fillPath(path, brush);
}

int pixelLength(double value) { return std::max(1, static_cast<int>(std::lround(value))); }

/// Copies opaque pixels, which need no blending, straight into the surface.
void copyPixels(QImage& target, QImage const& source, QRect const& visible, QPoint origin) {
    auto const bytes = static_cast<std::size_t>(visible.width()) * 4;
    for (int y = visible.top(); y <= visible.bottom(); ++y)
        std::memcpy(target.scanLine(y) + 4 * static_cast<std::ptrdiff_t>(visible.left()),
                    source.constScanLine(y - origin.y()) +
                        4 * static_cast<std::ptrdiff_t>(visible.left() - origin.x()),
                    bytes);
}

bool isShadowDrawable(double deviation, CGPoint offset, CGColor const& color) {
    return deviation >= 0 && std::isfinite(deviation) && std::isfinite(offset.x) && std::isfinite(offset.y) &&
           colorByte(color.alpha) > 0;
}

} // namespace

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

void Canvas::concatenate(CGAffineTransform const& transform) {
    state_->painter.setWorldTransform(
        QTransform(transform.a, transform.b, transform.c, transform.d, transform.tx, transform.ty), true);
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

void Canvas::drawPicture(Picture const& picture, CGRect const& rect, CGRect const& clip,
                         CornerRadii const& radii, std::optional<CGColor> tint) {
    if (!isDrawable(rect) || !isDrawable(clip)) return;
    auto const area = toQRect(rect);
    auto const& transform = state_->painter.worldTransform();
    auto const upright =
        transform.type() <= QTransform::TxScale && transform.m11() > 0 && transform.m22() > 0;
    auto const scale = deviceScale(state_->painter);
    auto const pixels = area.width() * area.height() * scale * scale;
    if (upright && pixels <= maximumRenditionPixels) {
        auto const target = devicePixels(state_->painter, area);
        auto const image = picture.state_->rendition(target.width(), target.height(), tint);
        if (!image.isNull()) drawUpright(state_->painter, image, target, toQRect(clip), radii);
        return;
    }
    auto const shrink = std::min(1.0, std::sqrt(maximumRenditionPixels / 4 / pixels));
    auto const image =
        picture.state_->rendition(pixelLength(std::min(area.width() * scale * shrink, 8192.0)),
                                  pixelLength(std::min(area.height() * scale * shrink, 8192.0)), tint);
    if (!image.isNull()) drawTransformed(state_->painter, image, area, toQRect(clip), radii);
}

void Canvas::drawSurface(Surface const& source, CGPoint origin, CornerRadii const& radii) {
    auto const& image = source.pixels().image;
    auto const place = devicePixels(state_->painter, QRectF(origin.x, origin.y, 0, 0)).topLeft();
    QRect const target(place, image.size());
    auto const visible = target & state_->clip;
    if (visible.isEmpty()) return;
    auto const plain = radii.isZero() && state_->painter.opacity() >= 1 && source.isOpaque();
    // A turned clip is known to the painter only.
    if (plain && state_->painter.worldTransform().type() <= QTransform::TxScale)
        return copyPixels(*static_cast<QImage*>(state_->painter.device()), image, visible, place);
    auto const corners = scaledRadii(radii, source.scale());
    DevicePixels const device(state_->painter);
    if (radii.isZero())
        state_->painter.drawImage(visible.topLeft(), image, visible.translated(-place));
    else
        fillWithTexture(state_->painter, image, target, roundedPath(target, corners));
}

void Canvas::drawSurfaceScaled(Surface const& source, CGRect const& rect) {
    if (isDrawable(rect)) state_->painter.drawImage(toQRect(rect), source.pixels().image);
}

void Canvas::drawShadow(CGRect const& rect, CornerRadii const& radii, double deviation, CGPoint offset,
                        CGColor const& color) {
    if (!isDrawable(rect) || !isShadowDrawable(deviation, offset, color)) return;
    auto const scale = deviceScale(state_->painter);
    ShadowShape const shape{rect.width() * scale, rect.height() * scale, scaledRadii(radii, scale),
                            std::min(deviation * scale, largestDeviation), toQColor(color).rgba()};
    if (scale == 0 || shape.isTooLarge()) return;
    shadowOf(shape).draw(state_->painter, {rect.minX() + offset.x, rect.minY() + offset.y}, scale);
}

void Canvas::drawShadow(Surface const& source, CGPoint origin, double deviation, CGPoint offset,
                        CGColor const& color) {
    if (!isShadowDrawable(deviation, offset, color)) return;
    auto const pixels = std::min(deviation * source.scale(), largestDeviation);
    shadowOf(source.pixels().image, pixels, toQColor(color).rgba())
        .draw(state_->painter, {origin.x + offset.x, origin.y + offset.y}, source.scale());
}

void Canvas::blurBackdrop(CGRect const& rect, CornerRadii const& radii, double blurRadius, double saturation,
                          CGColor const& overlay) {
    if (!isDrawable(rect)) return;
    auto const full = devicePixels(state_->painter, toQRect(rect));
    auto const& surface = *static_cast<QImage const*>(state_->painter.device());
    auto const area = full & surface.rect();
    if (area.isEmpty()) return;
    auto const scale = deviceScale(state_->painter);
    BackdropFilter const filter{
        .deviation = std::clamp(std::isfinite(blurRadius) ? blurRadius * scale : 0, 0.0, largestDeviation),
        .saturation = std::isfinite(saturation) ? saturation : 1,
        .overlay = overlay};
    auto const brush = filter.brush(surface, area);
    DevicePixels const device(state_->painter);
    state_->painter.save();
    state_->painter.setClipRect(area, Qt::IntersectClip);
    // The blurred picture takes the place of the sharp one, also where that is translucent.
    state_->painter.setCompositionMode(QPainter::CompositionMode_Source);
    state_->painter.fillPath(roundedPath(full, scaledRadii(radii, scale)), brush);
    state_->painter.restore();
}

} // namespace trelundo
