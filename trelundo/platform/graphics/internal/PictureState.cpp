#include "trelundo/platform/graphics/internal/PictureState.h"

#include "trelundo/platform/graphics/internal/ColorBytes.h"
#include "trelundo/platform/graphics/internal/RenditionCache.h"
#include "trelundo/platform/graphics/internal/RunOnPoolThread.h"
#include "trelundo/platform/graphics/internal/TransparentPixels.h"

#include <QPainter>
#include <QSvgRenderer>

namespace trelundo {

namespace {

QImage drawArtwork(QSvgRenderer& artwork, int width, int height) {
    auto image = transparentPixels(width, height);
    if (image.isNull()) return image;
    runOnPoolThread([&] {
        QPainter painter(&image);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        artwork.render(&painter, QRectF(0, 0, width, height));
    });
    return image;
}

QImage scaledPixels(QImage const& pixels, int width, int height) {
    if (pixels.width() == width && pixels.height() == height) return pixels;
    return pixels.scaled(width, height, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

QImage tinted(QImage image, CGColor const& tint) {
    image.convertTo(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), QColor(colorByte(tint.red), colorByte(tint.green), colorByte(tint.blue),
                                          colorByte(tint.alpha)));
    return image;
}

} // namespace

QImage Picture::State::rendition(int width, int height, std::optional<CGColor> const& tint) const {
    if (width <= 0 || height <= 0) return {};
    auto& cache = RenditionCache::shared();
    RenditionCache::Key const key{identity, width, height, tint};
    if (auto const kept = cache.find(key); !kept.isNull()) return kept;
    auto image = content.artwork ? drawArtwork(*content.artwork, width, height)
                                 : scaledPixels(content.pixels, width, height);
    if (tint && !image.isNull()) image = tinted(std::move(image), *tint);
    cache.insert(key, image);
    return image;
}

} // namespace trelundo
