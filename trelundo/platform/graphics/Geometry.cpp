#include "trelundo/platform/graphics/Geometry.h"

namespace trelundo {

CGRect CGRect::insetBy(CGFloat dx, CGFloat dy) const {
    if (isNull()) return null();
    CGRect const inset{minX() + dx, minY() + dy, width() - 2 * dx, height() - 2 * dy};
    return inset.size.width < 0 || inset.size.height < 0 ? null() : inset;
}

CGRect CGRect::intersection(CGRect const& other) const {
    if (isNull() || other.isNull()) return null();
    auto const left = std::max(minX(), other.minX());
    auto const top = std::max(minY(), other.minY());
    auto const right = std::min(maxX(), other.maxX());
    auto const bottom = std::min(maxY(), other.maxY());
    if (right < left || bottom < top) return null();
    return {left, top, right - left, bottom - top};
}

CGRect CGRect::unionWith(CGRect const& other) const {
    if (isNull()) return other;
    if (other.isNull()) return *this;
    auto const left = std::min(minX(), other.minX());
    auto const top = std::min(minY(), other.minY());
    return {left, top, std::max(maxX(), other.maxX()) - left, std::max(maxY(), other.maxY()) - top};
}

CGRect CGRect::integral() const {
    if (isNull()) return null();
    auto const left = std::floor(minX());
    auto const top = std::floor(minY());
    return {left, top, std::ceil(maxX()) - left, std::ceil(maxY()) - top};
}

CGAffineTransform CGAffineTransform::rotation(CGFloat radians) {
    auto const sine = std::sin(radians);
    auto const cosine = std::cos(radians);
    return {cosine, sine, -sine, cosine, 0, 0};
}

CGRect CGAffineTransform::apply(CGRect const& rect) const {
    if (rect.isNull()) return rect;
    CGPoint const corners[] = {apply({rect.minX(), rect.minY()}), apply({rect.maxX(), rect.minY()}),
                               apply({rect.minX(), rect.maxY()}), apply({rect.maxX(), rect.maxY()})};
    auto low = corners[0];
    auto high = corners[0];
    for (auto const& corner : corners) {
        low = {std::min(low.x, corner.x), std::min(low.y, corner.y)};
        high = {std::max(high.x, corner.x), std::max(high.y, corner.y)};
    }
    return {low.x, low.y, high.x - low.x, high.y - low.y};
}

CGAffineTransform CGAffineTransform::concatenating(CGAffineTransform const& next) const {
    return {a * next.a + b * next.c,
            a * next.b + b * next.d,
            c * next.a + d * next.c,
            c * next.b + d * next.d,
            tx * next.a + ty * next.c + next.tx,
            tx * next.b + ty * next.d + next.ty};
}

CGAffineTransform CGAffineTransform::inverted() const {
    auto const determinant = a * d - b * c;
    // A transform without an inverse is its own answer, as callers only map back what they mapped before.
    if (determinant == 0 || !std::isfinite(determinant)) return *this;
    return {d / determinant,
            -b / determinant,
            -c / determinant,
            a / determinant,
            (c * ty - d * tx) / determinant,
            (b * tx - a * ty) / determinant};
}

namespace {

// What layout sums up in fractions misses whole pixels by rounding errors; they must not cost a pixel.
constexpr CGFloat pixelTolerance = 1e-6;

} // namespace

CGFloat roundToPixel(CGFloat value, CGFloat scale) { return std::floor(value * scale + 0.5) / scale; }

CGFloat ceilToPixel(CGFloat value, CGFloat scale) {
    return std::ceil(value * scale - pixelTolerance) / scale + 0.0; // never a negative zero
}

} // namespace trelundo
