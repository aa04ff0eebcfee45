#include "trelundo/platform/foundation/DispatchQueue.h"

#include "trelundo/platform/foundation/Clock.h"
#include "trelundo/platform/foundation/Memory.h"
#include "trelundo/platform/foundation/internal/Context.h"
#include "trelundo/platform/foundation/internal/DispatchQueueState.h"
#include "trelundo/platform/foundation/internal/MainThread.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace trelundo {

namespace {

using Job = DispatchQueue::State::Job;
using Delayed = DispatchQueue::State::Delayed;

/// The order of a heap whose front is the job that comes first.
bool isLater(Job const& left, Job const& right) { return right.isBefore(left); }

double nowOf(Context const* context) { return Context::clockOf(context).now(); }

bool isDue(Delayed const& jobs, double now) { return !jobs.empty() && jobs.front().time <= now; }

void add(Delayed& jobs, Job job) {
    jobs.push_back(std::move(job));
    std::ranges::push_heap(jobs, isLater);
}

Job takeFirst(Delayed& jobs) {
    std::ranges::pop_heap(jobs, isLater);
    auto job = std::move(jobs.back());
    jobs.pop_back();
    return job;
}

} // namespace

Job DispatchQueue::State::job(double seconds, Block block) {
    auto* const context = Context::owner();
    return {nowOf(context) + seconds, nextNumber++, std::move(block), context};
}

bool DispatchQueue::State::hasDue() const {
    return std::ranges::any_of(delayed,
                               [](auto const& entry) { return isDue(entry.second, nowOf(entry.first)); });
}

void DispatchQueue::State::beginTurn() {
    for (auto& job : submitted) {
        auto& jobs = delayed[job.context];
        auto const now = nowOf(job.context);
        while (isDue(jobs, now) && jobs.front().isBefore(job)) running.push_back(takeFirst(jobs));
        running.push_back(std::move(job));
    }
    submitted.clear();
    for (auto& [context, jobs] : delayed)
        while (isDue(jobs, nowOf(context))) running.push_back(takeFirst(jobs));
    std::erase_if(delayed, [](auto const& entry) { return entry.second.empty(); });
    isRunning = !running.empty();
}

Job DispatchQueue::State::takeNext() {
    std::lock_guard const lock{mutex};
    if (running.empty()) return {};
    auto job = std::move(running.front());
    running.pop_front();
    return job;
}

void DispatchQueue::State::shift(double seconds) {
    std::lock_guard const lock{mutex};
    for (auto& job : submitted)
        if (!job.context) job.time += seconds;
    auto& jobs = delayed[nullptr];
    for (auto& job : jobs) job.time += seconds;
    std::ranges::make_heap(jobs, isLater); // times that the sum makes equal follow their numbers
}

void DispatchQueue::State::release(Context const& context) {
    std::lock_guard const lock{mutex};
    auto const left = nowOf(nullptr) - nowOf(&context);
    for (auto* const jobs : {&submitted, &running})
        for (auto& job : *jobs)
            if (job.context == &context) job = {job.time + left, job.number, std::move(job.block), nullptr};
    for (auto& job : delayed[&context])
        add(delayed[nullptr], {job.time + left, job.number, std::move(job.block), nullptr});
    delayed.erase(&context);
}

DispatchQueue::DispatchQueue()
    : state_(std::make_unique<State>()) {}
DispatchQueue::~DispatchQueue() = default;

DispatchQueue& DispatchQueue::main() {
    static auto& queue = *new DispatchQueue; // outlives every thread that may submit
    return queue;
}

void DispatchQueue::async(Block block) {
    if (!block) return;
    requireMemory(
        [&] { state_->submit([&] { state_->submitted.push_back(state_->job(0, std::move(block))); }); });
}

void DispatchQueue::asyncAfter(double seconds, Block block) {
    if (!block || std::isnan(seconds)) return;
    if (seconds <= 0) return async(std::move(block));
    requireMemory([&] {
        state_->submit([&] {
            auto job = state_->job(seconds, std::move(block));
            auto& delayed = state_->delayed[job.context];
            add(delayed, std::move(job));
        });
    });
}

bool DispatchQueue::runReady() {
    noteMainQueueRuns();
    {
        std::lock_guard const lock{state_->mutex};
        if (state_->isRunning) return false; // a block that turns the loop does not start the next block
        requireMemory([this] { state_->beginTurn(); });
        if (!state_->isRunning) return false;
    }
    struct TurnEnd {
        State& state;
        ~TurnEnd() {
            std::lock_guard const lock{state.mutex};
            state.isRunning = false;
        }
    } const turnEnd{*state_};
    for (auto job = state_->takeNext(); job.block; job = state_->takeNext()) {
        ContextScope const scope(job.context);
        requireMemory(job.block);
    }
    return true;
}

bool DispatchQueue::hasReady() const {
    std::lock_guard const lock{state_->mutex};
    return !state_->submitted.empty() || !state_->running.empty() || state_->hasDue();
}

double DispatchQueue::nextDeadline() const {
    std::lock_guard const lock{state_->mutex};
    auto const& clock = Clock::current();
    auto next = std::numeric_limits<double>::infinity();
    for (auto const& [context, jobs] : state_->delayed)
        if (!jobs.empty() && &Context::clockOf(context) == &clock) next = std::min(next, jobs.front().time);
    return next;
}

int DispatchQueue::addWakeUp(Block wakeUp) {
    std::lock_guard const lock{state_->mutex};
    state_->wakeUps.emplace(++state_->lastWakeUp, std::move(wakeUp));
    return state_->lastWakeUp;
}

void DispatchQueue::removeWakeUp(int id) {
    std::lock_guard const lock{state_->mutex};
    state_->wakeUps.erase(id);
}

} // namespace trelundo
