#include "trelundo/platform/graphics/Surface.h"

#include "trelundo/platform/graphics/PngWriter.h"
#include "trelundo/platform/graphics/internal/PixelMemory.h"

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
    : image_(std::make_unique<QImage>(transparentPixels(std::max(pixelWidth, 1), std::max(pixelHeight, 1))))
    , scale_(scale > 0 ? scale : 1) {
    // More than memory holds gives a single pixel: nothing can be drawn, but nothing breaks.
    if (image_->isNull()) *image_ = transparentPixels(1, 1);
}

Surface::~Surface() = default;

int Surface::pixelWidth() const { return image_->width(); }
int Surface::pixelHeight() const { return image_->height(); }
std::uint8_t const* Surface::bytes() const { return image_->constBits(); }
int Surface::bytesPerLine() const { return static_cast<int>(image_->bytesPerLine()); }

std::uint32_t Surface::pixel(int x, int y) const {
    if (x < 0 || y < 0 || x >= pixelWidth() || y >= pixelHeight()) return 0;
    return reinterpret_cast<std::uint32_t const*>(image_->constScanLine(y))[x];
}

QImage& Surface::image() {
    opaque_.reset();
    return *image_;
}

bool Surface::isOpaque() const {
    if (!opaque_) {
        opaque_ = true;
        for (int y = 0; *opaque_ && y < pixelHeight(); ++y)
            opaque_ =
                isOpaqueRow(reinterpret_cast<std::uint32_t const*>(image_->constScanLine(y)), pixelWidth());
    }
    return *opaque_;
}

bool Surface::writePng(std::string const& path, std::string& reason) const {
    return writePngFile({.pixels = bytes(),
                         .bytesPerLine = bytesPerLine(),
                         .width = pixelWidth(),
                         .height = pixelHeight(),
                         .opaque = isOpaque()},
                        path, reason);
}

} // namespace trelundo
