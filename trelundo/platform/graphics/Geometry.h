#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

namespace trelundo {

using CGFloat = double;
inline constexpr CGFloat greatestFiniteMagnitude = std::numeric_limits<double>::max();

/// Geometry in points; y grows downward. Equality is exact per field.
struct CGPoint {
    CGFloat x = 0;
    CGFloat y = 0;
    bool operator==(CGPoint const&) const = default;
    CGPoint operator+(CGPoint const& other) const { return {x + other.x, y + other.y}; }
    CGPoint operator-(CGPoint const& other) const { return {x - other.x, y - other.y}; }
};

struct CGSize {
    CGFloat width = 0;
    CGFloat height = 0;
    bool operator==(CGSize const&) const = default;
};

struct UIEdgeInsets {
    CGFloat top = 0;
    CGFloat left = 0;
    CGFloat bottom = 0;
    CGFloat right = 0;
    bool operator==(UIEdgeInsets const&) const = default;
};

struct NSDirectionalEdgeInsets {
    CGFloat top = 0;
    CGFloat leading = 0;
    CGFloat bottom = 0;
    CGFloat trailing = 0;
    bool operator==(NSDirectionalEdgeInsets const&) const = default;
};

struct CGRect {
    CGPoint origin;
    CGSize size;

    CGRect() = default;
    CGRect(CGPoint o, CGSize s)
        : origin(o)
        , size(s) {}
    CGRect(CGFloat x, CGFloat y, CGFloat width, CGFloat height)
        : origin{x, y}
        , size{width, height} {}

    /// Identity of the union and result of an empty intersection.
    static CGRect null() {
        auto const infinite = std::numeric_limits<double>::infinity();
        return {infinite, infinite, 0, 0};
    }
    bool isNull() const { return std::isinf(origin.x) || std::isinf(origin.y); }
    bool isEmpty() const { return isNull() || size.width == 0 || size.height == 0; }

    // The edges are those of the standardised rectangle: negative sizes are folded.
    CGFloat minX() const { return std::min(origin.x, origin.x + size.width); }
    CGFloat maxX() const { return std::max(origin.x, origin.x + size.width); }
    CGFloat minY() const { return std::min(origin.y, origin.y + size.height); }
    CGFloat maxY() const { return std::max(origin.y, origin.y + size.height); }
    CGFloat midX() const { return origin.x + size.width / 2; }
    CGFloat midY() const { return origin.y + size.height / 2; }
    CGFloat width() const { return std::abs(size.width); }
    CGFloat height() const { return std::abs(size.height); }

    /// Min edges belong to the rectangle, max edges do not.
    bool contains(CGPoint p) const { return p.x >= minX() && p.x < maxX() && p.y >= minY() && p.y < maxY(); }
    CGRect offsetBy(CGFloat dx, CGFloat dy) const {
        return {origin.x + dx, origin.y + dy, size.width, size.height};
    }
    /// Negative distances enlarge; more than half the size gives the null rectangle.
    CGRect insetBy(CGFloat dx, CGFloat dy) const;
    /// No clamping: the result may have a negative size.
    CGRect insetBy(UIEdgeInsets const& insets) const {
        return {origin.x + insets.left, origin.y + insets.top, size.width - insets.left - insets.right,
                size.height - insets.top - insets.bottom};
    }
    CGRect intersection(CGRect const& other) const;
    CGRect unionWith(CGRect const& other) const;
    bool intersects(CGRect const& other) const { return !intersection(other).isEmpty(); }
    /// The smallest whole-number rectangle around this one.
    CGRect integral() const;

    bool operator==(CGRect const&) const = default;
};

/// point' = (a x + c y + tx, b x + d y + ty).
struct CGAffineTransform {
    CGFloat a = 1, b = 0, c = 0, d = 1, tx = 0, ty = 0;

    static CGAffineTransform translation(CGFloat x, CGFloat y) { return {1, 0, 0, 1, x, y}; }
    static CGAffineTransform scale(CGFloat x, CGFloat y) { return {x, 0, 0, y, 0, 0}; }
    static CGAffineTransform rotation(CGFloat radians);
    bool isIdentity() const { return *this == CGAffineTransform{}; }
    CGPoint apply(CGPoint p) const { return {a * p.x + c * p.y + tx, b * p.x + d * p.y + ty}; }
    /// The smallest upright rectangle around the transformed one.
    CGRect apply(CGRect const& rect) const;
    /// This transform first, then `next`.
    CGAffineTransform concatenating(CGAffineTransform const& next) const;
    CGAffineTransform inverted() const;
    bool operator==(CGAffineTransform const&) const = default;
};

/// `value` rounded to the nearest device pixel of `scale` pixels a point, or up to the next one.
CGFloat roundToPixel(CGFloat value, CGFloat scale);
CGFloat ceilToPixel(CGFloat value, CGFloat scale);

} // namespace trelundo
