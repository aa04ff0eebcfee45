#pragma once

#include "trelundo/platform/coreanimation/CALayer.h"
#include "trelundo/platform/coreanimation/CATransaction.h"

#include <functional>
#include <memory>
#include <vector>

namespace trelundo {

/// One committed or open transaction: what its completion waits for.
struct AnimationGroup {
    std::function<void(bool)> completion;
    std::size_t running = 0;
    bool open = true; // between begin and commit
    bool animated = false;
    bool finished = true;
    double lastEnd = 0; // seconds of Clock::now()
    std::uint64_t order = 0;
};

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

/// All running animations and the completions that are due. Main thread only.
class AnimationRegistry {
public:
    static AnimationRegistry& shared();

    void begin(CATransaction::Settings settings);
    void commit();
    CATransaction::Settings const* current() const;
    void start(CALayer& layer, LayerAnimation::Contribution add);
    /// Drops the layer's animations; their completions get false.
    void drop(CALayer& layer);
    void advanceFrame(double now);
    bool hasWork() const { return !running_.empty() || !due_.empty(); }
    void reset();

    bool enabled = true;

private:
    struct Open {
        CATransaction::Settings settings;
        std::shared_ptr<AnimationGroup> group;
    };

    void release(std::shared_ptr<AnimationGroup> const& group, bool finished, double time);
    void deliverDue(std::uint64_t before);
    void scheduleTurn();

    std::vector<Open> open_;
    std::vector<std::shared_ptr<LayerAnimation>> running_;
    std::vector<std::shared_ptr<AnimationGroup>> due_;
    std::uint64_t groups_ = 0;
    std::uint64_t turn_ = 0; // tells a main-queue block of before a reset() from later ones
    bool turnScheduled_ = false;
    bool inIdleCompletion_ = false; // of a transaction that had nothing to animate
};

} // namespace trelundo
