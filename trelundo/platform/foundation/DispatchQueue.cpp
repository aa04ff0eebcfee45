#include "trelundo/platform/foundation/DispatchQueue.h"

#include "trelundo/platform/foundation/Clock.h"
#include "trelundo/platform/foundation/MainThread.h"
#include "trelundo/platform/foundation/Memory.h"
#include "trelundo/platform/foundation/internal/DispatchQueueState.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>
#include <thread>

namespace trelundo {

namespace {

/// The order of a heap whose front is the job that comes first.
bool isLater(DispatchQueue::State::Job const& left, DispatchQueue::State::Job const& right) {
    return right.isBefore(left);
}

std::atomic<std::thread::id> mainThread = std::this_thread::get_id();

} // namespace

bool isMainThread() { return mainThread == std::this_thread::get_id(); }

DispatchQueue::State::Job DispatchQueue::State::takeFirstDelayed() {
    std::ranges::pop_heap(delayed, isLater);
    auto job = std::move(delayed.back());
    delayed.pop_back();
    return job;
}

void DispatchQueue::State::beginTurn() {
    auto const now = Clock::current().now();
    for (auto& job : submitted) {
        while (hasDue(now) && delayed.front().isBefore(job)) running.push_back(takeFirstDelayed());
        running.push_back(std::move(job));
    }
    submitted.clear();
    while (hasDue(now)) running.push_back(takeFirstDelayed());
    isRunning = !running.empty();
}

DispatchQueue::Block DispatchQueue::State::takeNext() {
    std::lock_guard const lock{mutex};
    if (running.empty()) return nullptr;
    auto block = std::move(running.front().block);
    running.pop_front();
    return block;
}

void DispatchQueue::State::shift(double seconds) {
    std::lock_guard const lock{mutex};
    for (auto& job : submitted) job.time += seconds;
    for (auto& job : delayed) job.time += seconds;
    std::ranges::make_heap(delayed, isLater); // times that the sum makes equal follow their numbers
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
    requireMemory([&] {
        state_->submit([&] {
            state_->submitted.push_back({Clock::current().now(), state_->nextNumber++, std::move(block)});
        });
    });
}

void DispatchQueue::asyncAfter(double seconds, Block block) {
    if (!block || std::isnan(seconds)) return;
    if (seconds <= 0) return async(std::move(block));
    requireMemory([&] {
        state_->submit([&] {
            state_->delayed.push_back(
                {Clock::current().now() + seconds, state_->nextNumber++, std::move(block)});
            std::ranges::push_heap(state_->delayed, isLater);
        });
    });
}

bool DispatchQueue::runReady() {
    mainThread = std::this_thread::get_id();
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
    while (auto block = state_->takeNext()) requireMemory(block);
    return true;
}

bool DispatchQueue::hasReady() const {
    std::lock_guard const lock{state_->mutex};
    return !state_->submitted.empty() || !state_->running.empty() || state_->hasDue(Clock::current().now());
}

double DispatchQueue::nextDeadline() const {
    std::lock_guard const lock{state_->mutex};
    return state_->delayed.empty() ? std::numeric_limits<double>::infinity() : state_->delayed.front().time;
}

void DispatchQueue::setWakeUp(Block wakeUp) {
    std::lock_guard const lock{state_->mutex};
    state_->wakeUp.swap(wakeUp);
}

} // namespace trelundo
