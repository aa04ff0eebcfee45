#pragma once

#include "trelundo/platform/graphics/Geometry.h"

#include <algorithm>
#include <cmath>

namespace trelundo {

/// A rectangle of whole pixels; y grows downward.
struct PixelRect {
    int x = 0, y = 0, width = 0, height = 0;

    int right() const { return x + width; }
    int bottom() const { return y + height; }
    bool isEmpty() const { return width <= 0 || height <= 0; }
    double area() const { return isEmpty() ? 0.0 : static_cast<double>(width) * height; }
    bool operator==(PixelRect const&) const = default;

    PixelRect translated(int dx, int dy) const { return {x + dx, y + dy, width, height}; }
    PixelRect inflated(int distance) const {
        return {x - distance, y - distance, width + 2 * distance, height + 2 * distance};
    }
    bool contains(PixelRect const& other) const {
        return other.x >= x && other.y >= y && other.right() <= right() && other.bottom() <= bottom();
    }
    PixelRect intersection(PixelRect const& other) const {
        auto const left = std::max(x, other.x), top = std::max(y, other.y);
        PixelRect const shared{left, top, std::min(right(), other.right()) - left,
                               std::min(bottom(), other.bottom()) - top};
        return shared.isEmpty() ? PixelRect{} : shared;
    }
    bool intersects(PixelRect const& other) const { return !intersection(other).isEmpty(); }
    /// The smallest rectangle around both; an empty one adds nothing.
    PixelRect unionWith(PixelRect const& other) const {
        if (isEmpty()) return other;
        if (other.isEmpty()) return *this;
        auto const left = std::min(x, other.x), top = std::min(y, other.y);
        return {left, top, std::max(right(), other.right()) - left, std::max(bottom(), other.bottom()) - top};
    }

    CGRect points(double scale) const { return {x / scale, y / scale, width / scale, height / scale}; }
    /// Larger than anything shown, with room for moving it about.
    static PixelRect unlimited() { return {-(1 << 28), -(1 << 28), 1 << 29, 1 << 29}; }
};

/// The whole pixel next to a coordinate. What lies absurdly far away is moved to the end of the range.
inline int nearestPixel(double value) {
    return static_cast<int>(std::floor(std::clamp(value, -67'000'000.0, 67'000'000.0) + 0.5));
}

/// The pixels around a rectangle in points.
inline PixelRect pixelsAround(CGRect const& rect, double scale) {
    // A length in points times the scale misses whole pixels by rounding.
    constexpr double tolerance = 1e-6;
    auto const left = nearestPixel(std::floor(rect.minX() * scale + tolerance));
    auto const top = nearestPixel(std::floor(rect.minY() * scale + tolerance));
    return {left, top, nearestPixel(std::ceil(rect.maxX() * scale - tolerance)) - left,
            nearestPixel(std::ceil(rect.maxY() * scale - tolerance)) - top};
}

} // namespace trelundo
