#include "trelundo/platform/graphics/internal/CanvasState.h"
#include "trelundo/platform/graphics/internal/PictureState.h"

#include <cstring>

namespace trelundo {

namespace {

// Above this many pixels a scaled picture is not made; the painter scales what is visible instead.
constexpr double maximumRenditionPixels = 16e6;

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

} // namespace

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

} // namespace trelundo
