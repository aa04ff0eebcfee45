#include "trelundo/platform/coreanimation/internal/LayerAnimation.h"

#include <limits>

namespace trelundo {

namespace {

/// Frame times are multiples of 1/60 and rarely exact; an end may be this much ahead of its frame.
constexpr double timeTolerance = 1e-6;

double mix(double from, double to, double fraction) { return from + (to - from) * fraction; }

/// A transform taken apart: scale, then shear, then rotation, then translation.
struct TransformParts {
    double scaleX, scaleY = 0, shear = 0, angle, x, y;

    explicit TransformParts(CGAffineTransform const& t)
        : scaleX(std::hypot(t.a, t.b))
        , angle(std::atan2(t.b, t.a))
        , x(t.tx)
        , y(t.ty) {
        if (scaleX == 0) {
            angle = std::atan2(-t.c, t.d);
            scaleY = std::hypot(t.c, t.d);
            return;
        }
        auto const determinant = t.a * t.d - t.b * t.c;
        scaleY = determinant / scaleX;
        shear = (t.a * t.c + t.b * t.d) / scaleX;
    }

    CGAffineTransform transform() const {
        auto const cosine = std::cos(angle), sine = std::sin(angle);
        return {cosine * scaleX,
                sine * scaleX,
                cosine * shear - sine * scaleY,
                sine * shear + cosine * scaleY,
                x,
                y};
    }
};

double nearestTurn(double from, double to) {
    auto const whole = 2 * std::acos(-1.0);
    return from + std::remainder(to - from, whole);
}

CGColor scaledDifference(CGColor const& from, CGColor const& to, double rest) {
    return {(from.red - to.red) * rest, (from.green - to.green) * rest, (from.blue - to.blue) * rest,
            (from.alpha - to.alpha) * rest};
}

void addColor(CGColor& color, CGColor const& difference) {
    color.red += difference.red;
    color.green += difference.green;
    color.blue += difference.blue;
    color.alpha += difference.alpha;
}

/// An absent colour fades like the other one made transparent.
CGColor transparentAs(std::optional<CGColor> const& color, std::optional<CGColor> const& other) {
    if (color) return *color;
    auto clear = other.value_or(CGColor{});
    clear.alpha = 0;
    return clear;
}

} // namespace

double LayerAnimation::end() const {
    if (repeats) return std::numeric_limits<double>::infinity();
    return begin + (autoreverses ? 2 * duration : duration);
}

bool LayerAnimation::hasEnded(double time) const { return end() <= time + timeTolerance; }

double LayerAnimation::progressAt(double time) const {
    if (time <= begin) return 0;
    if (hasEnded(time)) return 1;
    auto rounds = (time - begin) / duration;
    auto const round = std::floor(rounds);
    auto fraction = rounds - round;
    if (autoreverses && std::fmod(round, 2) == 1) fraction = 1 - fraction;
    return timing.valueAt(fraction);
}

CGAffineTransform interpolate(CGAffineTransform const& from, CGAffineTransform const& to, double fraction) {
    TransformParts start(from);
    TransformParts const target(to);
    start.scaleX = mix(start.scaleX, target.scaleX, fraction);
    start.scaleY = mix(start.scaleY, target.scaleY, fraction);
    start.shear = mix(start.shear, target.shear, fraction);
    start.angle = mix(start.angle, nearestTurn(start.angle, target.angle), fraction);
    start.x = mix(start.x, target.x, fraction);
    start.y = mix(start.y, target.y, fraction);
    return start.transform();
}

LayerAnimation::Contribution contribution(double CALayerValues::*property, double from, double to) {
    return [=](CALayerValues& shown, double fraction) { shown.*property += (from - to) * (1 - fraction); };
}

LayerAnimation::Contribution contribution(CGRect CALayerValues::*property, CGRect from, CGRect to) {
    return [=](CALayerValues& shown, double fraction) {
        auto& rect = shown.*property;
        auto const rest = 1 - fraction;
        rect.origin.x += (from.origin.x - to.origin.x) * rest;
        rect.origin.y += (from.origin.y - to.origin.y) * rest;
        rect.size.width += (from.size.width - to.size.width) * rest;
        rect.size.height += (from.size.height - to.size.height) * rest;
    };
}

LayerAnimation::Contribution contribution(CGPoint CALayerValues::*property, CGPoint from, CGPoint to) {
    return [=](CALayerValues& shown, double fraction) {
        (shown.*property).x += (from.x - to.x) * (1 - fraction);
        (shown.*property).y += (from.y - to.y) * (1 - fraction);
    };
}

LayerAnimation::Contribution contribution(CGColor CALayerValues::*property, CGColor from, CGColor to) {
    return [=](CALayerValues& shown, double fraction) {
        addColor(shown.*property, scaledDifference(from, to, 1 - fraction));
    };
}

LayerAnimation::Contribution contribution(std::optional<CGColor> CALayerValues::*property,
                                          std::optional<CGColor> from, std::optional<CGColor> to) {
    auto const start = transparentAs(from, to);
    auto const target = transparentAs(to, from);
    return [=](CALayerValues& shown, double fraction) {
        if (!(shown.*property)) shown.*property = target;
        addColor(*(shown.*property), scaledDifference(start, target, 1 - fraction));
    };
}

LayerAnimation::Contribution contribution(CGAffineTransform CALayerValues::*property, CGAffineTransform from,
                                          CGAffineTransform to) {
    return [=](CALayerValues& shown, double fraction) {
        auto const between = interpolate(from, to, fraction);
        auto& sum = shown.*property;
        sum = {sum.a + between.a - to.a, sum.b + between.b - to.b,    sum.c + between.c - to.c,
               sum.d + between.d - to.d, sum.tx + between.tx - to.tx, sum.ty + between.ty - to.ty};
    };
}

} // namespace trelundo
