#include "trelundo/platform/graphics/internal/BackdropFilter.h"

#include "trelundo/platform/graphics/internal/BoxBlur.h"
#include "trelundo/platform/graphics/internal/ColorBytes.h"
#include "trelundo/platform/graphics/internal/Downsampling.h"

#include <algorithm>
#include <cmath>

namespace trelundo {

namespace {

/// Saturation by the luma weights of sRGB, on premultiplied colours: what the weights do is linear.
void saturate(std::uint8_t* pixel, double saturation) {
    auto const luma = 0.0722 * pixel[0] + 0.7152 * pixel[1] + 0.2126 * pixel[2];
    for (int i = 0; i < 3; ++i) {
        auto const value =
            std::clamp(luma + (pixel[i] - luma) * saturation, 0.0, static_cast<double>(pixel[3]));
        pixel[i] = static_cast<std::uint8_t>(std::lround(value));
    }
}

void layOver(std::uint8_t* pixel, CGColor const& overlay) {
    auto const alpha = std::clamp(overlay.alpha, 0.0, 1.0);
    double const source[] = {colorByte(overlay.blue) * alpha, colorByte(overlay.green) * alpha,
                             colorByte(overlay.red) * alpha, 255 * alpha};
    for (int i = 0; i < 4; ++i)
        pixel[i] =
            static_cast<std::uint8_t>(std::lround(std::min(source[i] + pixel[i] * (1 - alpha), 255.0)));
}

/// The pixels (blue, green, red, alpha) as an image whose edge pixels are repeated once all around: a
/// stretched texture mixes in what lies beyond its edges.
QImage bordered(BlurBuffer const& buffer) {
    QImage image(buffer.width + 2, buffer.height + 2, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        auto const* row = buffer.row(std::clamp(y - 1, 0, buffer.height - 1));
        for (int x = 0; x < image.width(); ++x) {
            auto const* pixel = row + 4 * static_cast<std::ptrdiff_t>(std::clamp(x - 1, 0, buffer.width - 1));
            line[x] = qRgba(pixel[2], pixel[1], pixel[0], pixel[3]);
        }
    }
    return image;
}

} // namespace

QBrush BackdropFilter::brush(QImage const& image, QRect const& area) const {
    auto const reduction = blurReduction(deviation);
    auto buffer = downsampled(image, area, reduction, 0, 4);
    boxBlur(buffer, deviation / reduction);
    for (std::size_t i = 0; i < buffer.bytes.size(); i += 4) {
        saturate(&buffer.bytes[i], saturation);
        layOver(&buffer.bytes[i], overlay);
    }
    QBrush filtered(bordered(buffer));
    filtered.setTransform(QTransform::fromScale(reduction, reduction) *
                          QTransform::fromTranslate(area.x() - reduction, area.y() - reduction));
    return filtered;
}

} // namespace trelundo
