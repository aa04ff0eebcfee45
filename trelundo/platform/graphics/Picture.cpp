#include "trelundo/platform/graphics/Picture.h"

#include "trelundo/platform/graphics/internal/ColorBytes.h"
#include "trelundo/platform/graphics/internal/GraphicsSystem.h"
#include "trelundo/platform/graphics/internal/PictureDecoder.h"
#include "trelundo/platform/graphics/internal/PixelMemory.h"
#include "trelundo/platform/graphics/internal/RenditionCache.h"
#include "trelundo/platform/graphics/internal/WholeFills.h"

#include <QPainter>
#include <QSvgRenderer>

namespace trelundo {

struct Picture::State {
    std::uint64_t identity;
    DecodedPicture content;
};

namespace {

std::uint64_t nextIdentity() {
    static std::uint64_t last = 0;
    return ++last;
}

QImage drawArtwork(QSvgRenderer& artwork, int width, int height) {
    auto image = transparentPixels(width, height);
    if (image.isNull()) return image;
    drawInWholeFills([&] {
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

CGSize sizeInPoints(DecodedPicture const& content, double scale) {
    if (content.artwork) return {content.artworkSize.width(), content.artworkSize.height()};
    return {content.pixels.width() / scale, content.pixels.height() / scale};
}

} // namespace

Ref<Picture> Picture::decode(std::string_view bytes, std::string const& name, double scale,
                             std::string& reason) {
    startGraphics();
    if (!(scale > 0) || !std::isfinite(scale)) scale = 1;
    auto content = decodePicture(bytes, name, reason);
    if (!content) return nullptr;
    auto const size = sizeInPoints(*content, scale);
    auto state = std::make_unique<State>(State{nextIdentity(), std::move(*content)});
    return make<Picture>(std::move(state), size, scale);
}

Picture::Picture(std::unique_ptr<State> state, CGSize size, double scale)
    : state_(std::move(state))
    , size_(size)
    , scale_(scale) {}

Picture::~Picture() { RenditionCache::shared().removePicture(state_->identity); }

bool Picture::isScalable() const { return state_->content.artwork != nullptr; }

QImage Picture::rendition(int width, int height, std::optional<CGColor> const& tint) const {
    if (width <= 0 || height <= 0) return {};
    auto& cache = RenditionCache::shared();
    RenditionCache::Key const key{state_->identity, width, height, tint};
    if (auto const kept = cache.find(key); !kept.isNull()) return kept;
    auto const& content = state_->content;
    auto image = content.artwork ? drawArtwork(*content.artwork, width, height)
                                 : scaledPixels(content.pixels, width, height);
    if (tint && !image.isNull()) image = tinted(std::move(image), *tint);
    cache.insert(key, image);
    return image;
}

} // namespace trelundo
