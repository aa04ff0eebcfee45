#pragma once

#include "trelundo/platform/coreanimation/CALayer.h"
#include "trelundo/platform/coreanimation/CAMediaTimingFunction.h"

#include <functional>
#include <memory>

namespace trelundo {

struct AnimationGroup;

/// The way of one property of one layer from an old to a new value. It adds its distance from the new value
/// to whatever is assigned, so that several of them add up.
struct LayerAnimation {
    using Contribution = std::function<void(CALayerValues& shown, double fraction)>;

    CALayer* layer; // cleared by the layer when it drops the animation
    Contribution add;
    double begin; // seconds of Clock::now(), the delay included
    double duration;
    CAMediaTimingFunction timing;
    bool repeats;
    bool autoreverses;
    std::shared_ptr<AnimationGroup> group;

    double end() const;
    bool hasEnded(double time) const;
    /// How much of the way is done at `time`, after the timing curve.
    double progressAt(double time) const;
};

/// Interpolation by the parts of a transform (translation, rotation, scale, shear), so that a turn keeps its
/// size.
CGAffineTransform interpolate(CGAffineTransform const& from, CGAffineTransform const& to, double fraction);

/// What adds `from` - `to` times the rest of the way to a property. Overloads for every animated type.
LayerAnimation::Contribution contribution(double CALayerValues::*property, double from, double to);
LayerAnimation::Contribution contribution(CGRect CALayerValues::*property, CGRect from, CGRect to);
LayerAnimation::Contribution contribution(CGPoint CALayerValues::*property, CGPoint from, CGPoint to);
LayerAnimation::Contribution contribution(CGColor CALayerValues::*property, CGColor from, CGColor to);
LayerAnimation::Contribution contribution(std::optional<CGColor> CALayerValues::*property,
                                          std::optional<CGColor> from, std::optional<CGColor> to);
LayerAnimation::Contribution contribution(CGAffineTransform CALayerValues::*property, CGAffineTransform from,
                                          CGAffineTransform to);

} // namespace trelundo
