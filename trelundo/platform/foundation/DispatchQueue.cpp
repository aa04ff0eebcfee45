#include "trelundo/platform/foundation/DispatchQueue.h"

#include "trelundo/platform/foundation/Clock.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdint>
#include <deque>
#include <limits>
#include <mutex>
#include <vector>

namespace trelundo {

namespace {

struct Job {
    double time; // Clock::now() from which the job is ready
    std::uint64_t number;
    DispatchQueue::Block block;

    bool isBefore(Job const& other) const {
        return time != other.time ? time < other.time : number < other.number;
    }
};

/// The order of a heap whose front is the job that comes first.
bool isLater(Job const& left, Job const& right) { return right.isBefore(left); }

} // namespace

struct DispatchQueue::State {
    mutable std::mutex mutex;
    std::deque<Job> submitted;
    std::vector<Job> delayed; // a heap by isLater()
    std::deque<Job> running;  // what is left of the current turn
    bool isRunning = false;
    std::uint64_t nextNumber = 0;
    Block wakeUp;

    bool hasDue(double now) const { return !delayed.empty() && delayed.front().time <= now; }

    Job takeFirstDelayed() {
        std::ranges::pop_heap(delayed, isLater);
        auto job = std::move(delayed.back());
        delayed.pop_back();
        return job;
    }

    /// Moves everything that is ready into `running`. A delayed job takes its place among those submitted at
    /// the moment of its deadline.
    void beginTurn() {
        auto const now = Clock::current().now();
        for (auto& job : submitted) {
            while (hasDue(now) && delayed.front().isBefore(job)) running.push_back(takeFirstDelayed());
            running.push_back(std::move(job));
        }
        submitted.clear();
        while (hasDue(now)) running.push_back(takeFirstDelayed());
        isRunning = !running.empty();
    }

    Block takeNext() {
        std::lock_guard const lock{mutex};
        if (running.empty()) return nullptr;
        auto block = std::move(running.front().block);
        running.pop_front();
        return block;
    }

    template <class Store> void submit(Store store) {
        Block wake;
        {
            std::lock_guard const lock{mutex};
            store();
            wake = wakeUp;
        }
        if (wake) wake();
    }
};

DispatchQueue::DispatchQueue()
    : state_(std::make_unique<State>()) {}
DispatchQueue::~DispatchQueue() = default;

DispatchQueue& DispatchQueue::main() {
    static auto& queue = *new DispatchQueue; // outlives every thread that may submit
    return queue;
}

void DispatchQueue::async(Block block) {
    if (!block) return;
    state_->submit([&] {
        state_->submitted.push_back({Clock::current().now(), state_->nextNumber++, std::move(block)});
    });
}

void DispatchQueue::asyncAfter(double seconds, Block block) {
    if (!block || std::isnan(seconds)) return;
    if (seconds <= 0) return async(std::move(block));
    state_->submit([&] {
        state_->delayed.push_back({Clock::current().now() + seconds, state_->nextNumber++, std::move(block)});
        std::ranges::push_heap(state_->delayed, isLater);
    });
}

bool DispatchQueue::runReady() {
    {
        std::lock_guard const lock{state_->mutex};
        if (state_->isRunning) return false; // a block that turns the loop does not start the next block
        state_->beginTurn();
        if (!state_->isRunning) return false;
    }
    struct TurnEnd {
        State& state;
        ~TurnEnd() {
            std::lock_guard const lock{state.mutex};
            state.isRunning = false;
        }
    } const turnEnd{*state_};
    while (auto block = state_->takeNext()) block();
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

void DispatchQueue::removeAll() {
    // The blocks die after the lock is released: what they captured may submit again.
    std::deque<Job> submitted, running;
    std::vector<Job> delayed;
    std::lock_guard const lock{state_->mutex};
    submitted.swap(state_->submitted);
    running.swap(state_->running);
    delayed.swap(state_->delayed);
}

void DispatchQueue::setWakeUp(Block wakeUp) {
    std::lock_guard const lock{state_->mutex};
    state_->wakeUp.swap(wakeUp);
}

} // namespace trelundo
