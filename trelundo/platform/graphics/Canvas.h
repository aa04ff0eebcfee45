#pragma once

#include "trelundo/platform/graphics/CGColor.h"
#include "trelundo/platform/graphics/Geometry.h"
#include "trelundo/platform/graphics/Picture.h"

#include <memory>
#include <optional>
#include <span>

namespace trelundo {

class Surface;

/// Corner radii of a rectangle in points; a radius above half the shorter side draws as half of it.
struct CornerRadii {
    double topLeft = 0, topRight = 0, bottomLeft = 0, bottomRight = 0;
    static CornerRadii all(double radius) { return {radius, radius, radius, radius}; }
    bool isZero() const { return topLeft <= 0 && topRight <= 0 && bottomLeft <= 0 && bottomRight <= 0; }
    bool operator==(CornerRadii const&) const = default;
};

struct GradientStop {
    double location; // 0...1, non-decreasing
    CGColor color;
};

/// Draws into a surface in points. Everything that needs the graphics library goes through here.
class Canvas {
public:
    explicit Canvas(Surface& surface);
    ~Canvas();
    Canvas(Canvas const&) = delete;
    Canvas& operator=(Canvas const&) = delete;

    double scale() const;

    void save();
    void restore();
    void concatenate(CGAffineTransform const& transform);
    void translate(double x, double y) { concatenate(CGAffineTransform::translation(x, y)); }
    void clip(CGRect const& rect); // hard edges on whole pixels
    /// Multiplies the opacity of everything drawn until the matching restore().
    void multiplyOpacity(double opacity);

    void clear(CGRect const& rect); // to transparent
    void fill(CGRect const& rect, CGColor const& color);
    void fillRounded(CGRect const& rect, CornerRadii const& radii, CGColor const& color);
    /// A border of `width` points inside `rect`.
    void strokeRounded(CGRect const& rect, CornerRadii const& radii, double width, CGColor const& color);
    /// Linear gradient from `start` to `end` (unit square of `rect`), interpolated premultiplied; the end
    /// colours continue beyond the stops.
    void fillGradient(CGRect const& rect, CornerRadii const& radii, std::span<GradientStop const> stops,
                      CGPoint start, CGPoint end);
    /// `picture` scaled into `rect`, cut to `clip` with antialiased rounded corners. With `tint` only the
    /// picture's alpha counts, filled with that colour.
    void drawPicture(Picture const& picture, CGRect const& rect, CGRect const& clip, CornerRadii const& radii,
                     std::optional<CGColor> tint);
    /// A pixel copy of another surface at `origin` (placed on whole pixels, blended), cut to `radii`.
    void drawSurface(Surface const& source, CGPoint origin, CornerRadii const& radii = {});
    /// `source` through the current transform, smoothly scaled into `rect`.
    void drawSurfaceScaled(Surface const& source, CGRect const& rect);
    /// Gaussian shadow of a rounded rectangle. `deviation` in points.
    void drawShadow(CGRect const& rect, CornerRadii const& radii, double deviation, CGPoint offset,
                    CGColor const& color);
    /// Shadow of arbitrary content: `source`'s alpha, blurred and coloured, its top left corner at `origin`.
    void drawShadow(Surface const& source, CGPoint origin, double deviation, CGPoint offset,
                    CGColor const& color);
    /// Blurs what is already drawn inside `rect` (three box passes at reduced size), raises its saturation
    /// and lays `overlay` over it, all cut to `radii`.
    void blurBackdrop(CGRect const& rect, CornerRadii const& radii, double blurRadius, double saturation,
                      CGColor const& overlay);
    /// A wedge-shaped polygon in points, filled without outline (activity indicator, small marks).
    void fillPolygon(std::span<CGPoint const> points, CGColor const& color);

    /// For what the platform itself draws through the graphics library.
    struct State;
    State& state() { return *state_; }

private:
    std::unique_ptr<State> state_;
};

} // namespace trelundo
