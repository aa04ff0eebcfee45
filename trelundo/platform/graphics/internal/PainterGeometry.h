#pragma once

#include "trelundo/platform/graphics/Canvas.h"
#include "trelundo/platform/graphics/internal/ColorBytes.h"

#include <QColor>
#include <QPainter>
#include <QPainterPath>

namespace trelundo {

/// Swaps the painter's transform for device pixels as long as it lives. Images are not resampled meanwhile,
/// which lets the painter copy them the short way.
class DevicePixels {
public:
    explicit DevicePixels(QPainter& painter)
        : painter_(painter)
        , saved_(painter.worldTransform()) {
        painter_.resetTransform();
        painter_.setRenderHint(QPainter::SmoothPixmapTransform, false);
    }
    ~DevicePixels() {
        painter_.setRenderHint(QPainter::SmoothPixmapTransform, true);
        painter_.setWorldTransform(saved_);
    }
    DevicePixels(DevicePixels const&) = delete;
    DevicePixels& operator=(DevicePixels const&) = delete;

private:
    QPainter& painter_;
    QTransform saved_;
};

inline QColor toQColor(CGColor const& color) {
    return {colorByte(color.red), colorByte(color.green), colorByte(color.blue), colorByte(color.alpha)};
}

inline QRectF toQRect(CGRect const& rect) { return {rect.minX(), rect.minY(), rect.width(), rect.height()}; }

/// False for what cannot be drawn: empty, null, infinite or not a number.
bool isDrawable(CGRect const& rect);

/// The upright device rectangle of `rect` on whole pixels, edges rounded to the nearest.
QRect devicePixels(QPainter const& painter, QRectF const& rect);

/// Device pixels a unit of the painter's current coordinates covers, averaged over both axes.
double deviceScale(QPainter const& painter);

QPainterPath roundedPath(QRectF const& rect, CornerRadii const& radii);
CornerRadii scaledRadii(CornerRadii const& radii, double factor);

} // namespace trelundo
