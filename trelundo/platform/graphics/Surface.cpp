#include "trelundo/platform/graphics/Surface.h"

#include "trelundo/platform/graphics/PngWriter.h"
#include "trelundo/platform/graphics/internal/SurfacePixels.h"
#include "trelundo/platform/graphics/internal/TransparentPixels.h"

#include <algorithm>

namespace trelundo {

namespace {

bool isOpaqueRow(std::uint32_t const* pixels, int count) {
    std::uint32_t all = 0xff000000;
    for (int i = 0; i < count; ++i) all &= pixels[i];
    return all >= 0xff000000;
}

} // namespace

Surface::Surface(int pixelWidth, int pixelHeight, double scale)
    : pixels_(std::make_unique<Pixels>(
          Pixels{transparentPixels(std::max(pixelWidth, 1), std::max(pixelHeight, 1))}))
    , scale_(scale > 0 ? scale : 1) {
    // More than memory holds gives a single pixel: nothing can be drawn, but nothing breaks.
    if (pixels_->image.isNull()) pixels_->image = transparentPixels(1, 1);
}

Surface::~Surface() = default;

int Surface::pixelWidth() const { return pixels_->image.width(); }
int Surface::pixelHeight() const { return pixels_->image.height(); }
std::uint8_t const* Surface::bytes() const { return pixels_->image.constBits(); }
int Surface::bytesPerLine() const { return static_cast<int>(pixels_->image.bytesPerLine()); }

std::uint32_t Surface::pixel(int x, int y) const {
    if (x < 0 || y < 0 || x >= pixelWidth() || y >= pixelHeight()) return 0;
    return reinterpret_cast<std::uint32_t const*>(pixels_->image.constScanLine(y))[x];
}

Surface::Pixels& Surface::pixels() {
    opaque_.reset();
    return *pixels_;
}

bool Surface::isOpaque() const {
    if (!opaque_) {
        opaque_ = true;
        for (int y = 0; *opaque_ && y < pixelHeight(); ++y)
            opaque_ = isOpaqueRow(reinterpret_cast<std::uint32_t const*>(pixels_->image.constScanLine(y)),
                                  pixelWidth());
    }
    return *opaque_;
}

Result<void> Surface::writePng(std::string const& path) const {
    return writePngFile({.pixels = bytes(),
                         .bytesPerLine = bytesPerLine(),
                         .width = pixelWidth(),
                         .height = pixelHeight(),
                         .isOpaque = isOpaque()},
                        path);
}

} // namespace trelundo
