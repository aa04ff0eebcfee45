#include "trelundo/platform/coreanimation/internal/LayerBitmap.h"

#include <cstring>
#include <utility>

namespace trelundo {

namespace {

std::uint64_t serials = 0;

constexpr double worthCropping = 0.8; // of the area

/// The part of a surface in which any pixel is not fully transparent.
PixelRect drawnPart(Surface const& surface) {
    PixelRect part;
    for (int y = 0; y < surface.pixelHeight(); ++y) {
        auto const* const line = surface.bytes() + static_cast<std::ptrdiff_t>(y) * surface.bytesPerLine();
        auto const pixel = [line](int x) {
            std::uint32_t value = 0;
            std::memcpy(&value, line + static_cast<std::ptrdiff_t>(x) * 4, sizeof value);
            return value;
        };
        int first = 0, last = surface.pixelWidth();
        while (first < last && pixel(first) == 0) ++first;
        while (last > first && pixel(last - 1) == 0) --last;
        part = part.unionWith({first, y, last - first, 1});
    }
    return part;
}

} // namespace

std::size_t LayerBitmap::bytes() const {
    if (!surface_) return 0;
    return static_cast<std::size_t>(surface_->bytesPerLine()) *
           static_cast<std::size_t>(surface_->pixelHeight());
}

void LayerBitmap::renewSerial() { serial_ = ++serials; }

void LayerBitmap::invalidate(PixelRect const& rect, double scale) {
    rect_ = rect;
    scale_ = scale;
    renewSerial();
    discardPixels();
}

void LayerBitmap::discardPixels() {
    surface_ = nullptr;
    isRendered_ = false;
}

void LayerBitmap::allocateSurface() {
    surface_ = makeSurface();
    surfaceX_ = rect_.x;
    surfaceY_ = rect_.y;
}

std::unique_ptr<Surface> LayerBitmap::makeSurface(PixelRect const& rect) const {
    return std::make_unique<Surface>(rect.width, rect.height, scale_);
}

void LayerBitmap::trim() {
    auto const part = drawnPart(*surface_);
    if (part.isEmpty()) {
        surface_ = nullptr;
        return;
    }
    if (part.area() > rect_.area() * worthCropping) return;
    auto cropped = makeSurface(part);
    {
        Canvas canvas(*cropped);
        canvas.drawSurface(*surface_, {-part.x / scale_, -part.y / scale_});
    }
    surface_ = std::move(cropped);
    surfaceX_ += part.x;
    surfaceY_ += part.y;
}

void LayerBitmap::paint(Canvas& canvas, Surface& /*target*/, int x, int y) {
    if (!std::exchange(isRendered_, true)) render();
    if (surface_) canvas.drawSurface(*surface_, {(x + surfaceX_) / scale_, (y + surfaceY_) / scale_});
}

} // namespace trelundo
