#include "trelundo/platform/graphics/internal/TransparentPixels.h"

#include "trelundo/platform/foundation/internal/LargePages.h"

#include <limits>

namespace trelundo {

namespace {

QImage newPixels(int width, int height) {
    constexpr auto format = QImage::Format_ARGB32_Premultiplied;
    if (width <= 0 || height <= 0) return {};
    auto const line = std::size_t{4} * static_cast<std::size_t>(width);
    auto const size = line * static_cast<std::size_t>(height);
    if (size < largePageSize || size > std::numeric_limits<int>::max()) return {width, height, format};
    auto* const bytes = allocateLargePages(size);
    if (!bytes) return {};
    return {static_cast<uchar*>(bytes),
            width,
            height,
            static_cast<qsizetype>(line),
            format,
            freeLargePages,
            bytes};
}

} // namespace

QImage transparentPixels(int width, int height) {
    auto image = newPixels(width, height);
    image.fill(Qt::transparent);
    return image;
}

} // namespace trelundo
