#include "trelundo/platform/graphics/internal/PixelMemory.h"

#include <cstdlib>
#include <limits>

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace trelundo {

namespace {

QImage plainPixels(int width, int height) { return {width, height, QImage::Format_ARGB32_Premultiplied}; }

#ifdef __linux__
constexpr std::size_t largePage = 2U << 20; // bytes

QImage newPixels(int width, int height) {
    if (width <= 0 || height <= 0) return {};
    auto const line = std::size_t{4} * static_cast<std::size_t>(width);
    auto const size = line * static_cast<std::size_t>(height);
    if (size < largePage || size > std::numeric_limits<int>::max()) return plainPixels(width, height);
    auto* const bytes = std::aligned_alloc(largePage, (size + largePage - 1) / largePage * largePage);
    if (!bytes) return {};
    // Advice only: without large pages the memory serves as well.
    madvise(bytes, size, MADV_HUGEPAGE);
    return {static_cast<uchar*>(bytes),          width,     height, static_cast<qsizetype>(line),
            QImage::Format_ARGB32_Premultiplied, std::free, bytes};
}
#else
QImage newPixels(int width, int height) { return plainPixels(width, height); }
#endif

} // namespace

QImage transparentPixels(int width, int height) {
    auto image = newPixels(width, height);
    image.fill(Qt::transparent);
    return image;
}

} // namespace trelundo
