#pragma once

#include "trelundo/platform/foundation/Result.h"
#include "trelundo/platform/graphics/Geometry.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace trelundo {

/// A rectangle of premultiplied 32-bit pixels. `scale` is pixels a point.
class Surface {
public:
    Surface(int pixelWidth, int pixelHeight, double scale);
    ~Surface();
    Surface(Surface const&) = delete;
    Surface& operator=(Surface const&) = delete;

    int pixelWidth() const;
    int pixelHeight() const;
    double scale() const { return scale_; }
    CGSize size() const { return {pixelWidth() / scale_, pixelHeight() / scale_}; }

    /// The pixel at (x, y) as 0xAARRGGBB, premultiplied.
    std::uint32_t pixel(int x, int y) const;
    std::uint8_t const* bytes() const;
    int bytesPerLine() const;

    /// Writes a PNG with light compression (a fraction of the time of the default). The error names the file.
    Result<void> writePng(std::string const& path) const;

    /// Whether no pixel lets anything through. Found once after each change.
    bool isOpaque() const;

    /// For drawing by the platform itself; whoever asks for them on a surface that is not const counts as
    /// having changed them.
    struct Pixels;
    Pixels& pixels();
    Pixels const& pixels() const { return *pixels_; }

private:
    std::unique_ptr<Pixels> pixels_;
    double scale_;
    mutable std::optional<bool> opaque_;
};

} // namespace trelundo
