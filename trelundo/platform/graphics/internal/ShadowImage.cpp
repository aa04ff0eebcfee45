#include "trelundo/platform/graphics/internal/ShadowImage.h"

#include "trelundo/platform/graphics/internal/BoxBlur.h"
#include "trelundo/platform/graphics/internal/Downsampling.h"
#include "trelundo/platform/graphics/internal/PainterGeometry.h"

#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>
#include <list>

namespace trelundo {

namespace {

// A Gaussian has faded out this many deviations from the edge.
constexpr double reach = 3;
constexpr double maximumShadowPixels = 16e6;
constexpr qsizetype maximumShadowBytes = 8 * 1024 * 1024;

QImage colored(BlurBuffer const& mask, QRgb color) {
    std::array<std::uint32_t, 256> shades{};
    for (std::uint32_t i = 0; i < shades.size(); ++i) {
        auto const alpha = (static_cast<std::uint32_t>(qAlpha(color)) * i + 127) / 255;
        shades[i] = qPremultiply((color & 0xffffff) | alpha << 24);
    }
    QImage image(mask.width, mask.height, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < mask.height; ++y) {
        auto* line = reinterpret_cast<std::uint32_t*>(image.scanLine(y));
        auto const* alphas = mask.row(y);
        for (int x = 0; x < mask.width; ++x) line[x] = shades[alphas[x]];
    }
    return image;
}

BlurBuffer shapeMask(ShadowShape const& shape, int margin, int reduction) {
    auto const size = [&](double length) {
        return static_cast<int>(std::ceil(length / reduction)) + 2 * margin;
    };
    QImage image(size(shape.width), size(shape.height), QImage::Format_Grayscale8);
    image.fill(0);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QRectF const area(margin, margin, shape.width / reduction, shape.height / reduction);
    painter.fillPath(roundedPath(area, scaledRadii(shape.radii, 1.0 / reduction)), Qt::white);
    painter.end();
    BlurBuffer mask(image.width(), image.height(), 1);
    for (int y = 0; y < mask.height; ++y) std::copy_n(image.constScanLine(y), mask.width, mask.row(y));
    return mask;
}

int marginFor(double deviation, int reduction) {
    return static_cast<int>(std::ceil(reach * deviation / reduction)) + 1;
}

ShadowImage makeShadow(ShadowShape const& shape) {
    ShadowImage shadow;
    shadow.reduction = blurReduction(shape.deviation);
    shadow.margin = marginFor(shape.deviation, shadow.reduction);
    auto mask = shapeMask(shape, shadow.margin, shadow.reduction);
    boxBlur(mask, shape.deviation / shadow.reduction);
    shadow.image = colored(mask, shape.color);
    return shadow;
}

} // namespace

bool ShadowShape::isTooLarge() const {
    auto const reduction = blurReduction(deviation);
    return width * height > maximumShadowPixels * reduction * reduction;
}

void ShadowImage::draw(QPainter& painter, QPointF const& corner, double scale) const {
    auto const unit = reduction / scale;
    QRectF const target(corner.x() - margin * unit, corner.y() - margin * unit, image.width() * unit,
                        image.height() * unit);
    painter.drawImage(target, image);
}

ShadowImage shadowOf(ShadowShape const& shape) {
    struct Entry {
        ShadowShape shape;
        ShadowImage shadow;
    };
    static auto& recent = *new std::list<Entry>;
    constexpr std::size_t most = 8;
    for (auto entry = recent.begin(); entry != recent.end(); ++entry) {
        if (entry->shape != shape) continue;
        recent.splice(recent.begin(), recent, entry);
        return entry->shadow;
    }
    auto shadow = makeShadow(shape);
    if (shadow.image.sizeInBytes() * static_cast<qsizetype>(most) <= maximumShadowBytes) {
        recent.push_front({shape, shadow});
        if (recent.size() > most) recent.pop_back();
    }
    return shadow;
}

ShadowImage shadowOf(QImage const& source, double deviation, QRgb color) {
    ShadowImage shadow;
    shadow.reduction = blurReduction(deviation);
    shadow.margin = marginFor(deviation, shadow.reduction);
    auto mask = downsampled(source, source.rect(), shadow.reduction, shadow.margin, 1);
    boxBlur(mask, deviation / shadow.reduction);
    shadow.image = colored(mask, color);
    return shadow;
}

} // namespace trelundo
