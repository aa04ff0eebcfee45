#pragma once

#include "trelundo/platform/coreanimation/CATransaction.h"
#include "trelundo/platform/coreanimation/internal/LayerAnimation.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace trelundo {

class AnimationRegistry;
class Context;

/// One committed or open transaction: what its completion waits for.
struct AnimationGroup {
    AnimationRegistry* registry; // outlives its running animations
    std::function<void(bool)> completion;
    std::size_t running = 0;
    bool isOpen = true; // between begin and commit
    bool hasAnimations = false;
    bool isFinished = true;
    double lastEnd = 0; // seconds of Clock::now()
    std::uint64_t order = 0;
};

/// The running animations of one shell and the completions that are due. Main thread only.
class AnimationRegistry {
public:
    /// That of the current shell.
    static AnimationRegistry& shared();
    explicit AnimationRegistry(Context& context)
        : context_(context) {}
    ~AnimationRegistry() { reset(); }

    void begin(CATransaction::Settings settings);
    void commit();
    CATransaction::Settings const* current() const;
    void start(CALayer& layer, LayerAnimation::Contribution add);
    /// Drops the layer's animations, wherever they run; their completions get false.
    static void drop(CALayer& layer);
    /// Drops all of them as if their layers did: the shell has no more frames.
    void dropAll();
    void advanceFrame(double now);
    bool hasWork() const { return !running_.empty() || !due_.empty(); }
    /// Drops everything without completions: what one test leaves must not reach into the next.
    void reset();

    static inline bool isEnabled = true; // everywhere

private:
    struct Open {
        CATransaction::Settings settings;
        std::shared_ptr<AnimationGroup> group;
    };

    void forget(std::shared_ptr<LayerAnimation> const& animation);
    void release(std::shared_ptr<AnimationGroup> const& group, bool finished, double time);
    void deliverDue(std::uint64_t before);
    void scheduleTurn();

    Context& context_; // owns this
    std::vector<Open> open_;
    std::vector<std::shared_ptr<LayerAnimation>> running_;
    std::vector<std::shared_ptr<AnimationGroup>> due_;
    std::uint64_t groups_ = 0;
    std::uint64_t turn_ = 0; // tells a main-queue block of before a reset() from later ones
    bool isTurnScheduled_ = false;
    bool isInIdleCompletion_ = false; // of a transaction that had nothing to animate
};

} // namespace trelundo
