#include "trelundo/platform/coreanimation/internal/AnimationRegistry.h"

#include "trelundo/platform/foundation/Clock.h"
#include "trelundo/platform/foundation/DispatchQueue.h"
#include "trelundo/platform/foundation/Log.h"
#include "trelundo/platform/foundation/internal/Context.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace trelundo {

namespace {

constexpr double frameRate = 60;

/// The frame in which an end is noticed: ends of one frame are told in the order of creation.
double frameOf(double time) { return std::ceil(time * frameRate - 1e-4); }

bool isToldBefore(std::shared_ptr<AnimationGroup> const& left, std::shared_ptr<AnimationGroup> const& right) {
    return std::pair(frameOf(left->lastEnd), left->order) < std::pair(frameOf(right->lastEnd), right->order);
}

} // namespace

AnimationRegistry& AnimationRegistry::shared() {
    auto& context = Context::current();
    return context.part<AnimationRegistry>([&context] { return new AnimationRegistry(context); });
}

void AnimationRegistry::begin(CATransaction::Settings settings) {
    if (!open_.empty() && settings.inherits) {
        settings.duration = open_.back().settings.duration;
        settings.timing = open_.back().settings.timing;
    }
    auto group = std::make_shared<AnimationGroup>();
    group->registry = this;
    group->completion = std::exchange(settings.completion, nullptr);
    group->order = ++groups_;
    open_.push_back({std::move(settings), std::move(group)});
}

void AnimationRegistry::commit() {
    if (open_.empty()) return logWarning("CATransaction: commit without begin");
    auto group = std::move(open_.back().group);
    open_.pop_back();
    group->isOpen = false;
    if (group->running > 0) return;
    group->lastEnd = std::max(group->lastEnd, Clock::current().now());
    if (!group->completion) return;
    due_.push_back(std::move(group));
    scheduleTurn();
}

CATransaction::Settings const* AnimationRegistry::current() const {
    return open_.empty() ? nullptr : &open_.back().settings;
}

void AnimationRegistry::start(CALayer& layer, LayerAnimation::Contribution add) {
    auto const& [settings, group] = open_.back();
    auto animation = std::make_shared<LayerAnimation>(
        LayerAnimation{&layer, std::move(add), Clock::current().now() + std::max(0.0, settings.delay),
                       settings.duration, settings.timing, settings.repeats, settings.autoreverses, group});
    ++group->running;
    group->hasAnimations = true;
    layer.animations_.push_back(animation);
    running_.push_back(std::move(animation));
}

void AnimationRegistry::drop(CALayer& layer) {
    auto const dropped = std::exchange(layer.animations_, {});
    for (auto const& animation : dropped) animation->layer = nullptr;
    for (auto const& animation : dropped) animation->group->registry->forget(animation);
}

void AnimationRegistry::forget(std::shared_ptr<LayerAnimation> const& animation) {
    std::erase(running_, animation);
    release(animation->group, false, Clock::current().now());
    if (!due_.empty()) scheduleTurn();
}

void AnimationRegistry::dropAll() {
    auto const running = running_;
    for (auto const& animation : running)
        if (animation->layer) drop(*animation->layer);
}

void AnimationRegistry::release(std::shared_ptr<AnimationGroup> const& group, bool finished, double time) {
    group->isFinished = group->isFinished && finished;
    group->lastEnd = std::max(group->lastEnd, time);
    if (--group->running == 0 && !group->isOpen && group->completion) due_.push_back(group);
}

void AnimationRegistry::advanceFrame(double now) {
    auto const ended = std::ranges::stable_partition(
        running_, [=](auto const& animation) { return !animation->hasEnded(now); });
    std::vector<std::shared_ptr<LayerAnimation>> const done(ended.begin(), ended.end());
    running_.erase(ended.begin(), ended.end());
    for (auto const& animation : done) {
        std::erase(animation->layer->animations_, animation);
        release(animation->group, true, animation->end());
    }
    deliverDue(groups_);
}

/// Calls the completions of transactions created up to number `before`; what these create waits for the next
/// frame or turn, so that a chain that restarts itself cannot run away.
void AnimationRegistry::deliverDue(std::uint64_t before) {
    std::vector<std::shared_ptr<AnimationGroup>> ready;
    std::ranges::copy_if(due_, std::back_inserter(ready),
                         [=](auto const& group) { return group->order <= before; });
    std::erase_if(due_, [=](auto const& group) { return group->order <= before; });
    std::ranges::stable_sort(ready, isToldBefore);
    for (auto const& group : ready) {
        auto const completion = std::exchange(group->completion, nullptr);
        isInIdleCompletion_ = !group->hasAnimations;
        if (completion) completion(group->isFinished);
    }
    isInIdleCompletion_ = false;
}

void AnimationRegistry::scheduleTurn() {
    // A chain of transactions with nothing to animate would otherwise keep the main queue busy without end:
    // what the completion of one of them starts waits for a frame.
    if (isTurnScheduled_ || isInIdleCompletion_) return;
    isTurnScheduled_ = true;
    DispatchQueue::main().async([this, alive = context_.shared_from_this(), turn = turn_] {
        if (turn != turn_) return;
        isTurnScheduled_ = false;
        ContextScope const scope(alive.get());
        deliverDue(groups_);
    });
}

void AnimationRegistry::reset() {
    for (auto const& animation : running_) {
        animation->layer->animations_.clear();
        animation->layer = nullptr;
    }
    running_.clear();
    due_.clear();
    open_.clear();
    isEnabled = true;
    isTurnScheduled_ = false;
    isInIdleCompletion_ = false;
    ++turn_;
}

} // namespace trelundo
