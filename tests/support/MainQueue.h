#pragma once

#include "trelundo/platform/foundation/internal/DispatchQueueState.h"

namespace trelundo::test {

/// Drops what is pending on the main queue: what one test leaves must not reach into the next.
inline void clearMainQueue() {
    // The blocks die after the lock is released: what they captured may submit again.
    std::deque<DispatchQueue::State::Job> submitted, running;
    std::map<Context const*, DispatchQueue::State::Delayed> delayed;
    auto& state = DispatchQueue::main().state();
    std::lock_guard const lock{state.mutex};
    submitted.swap(state.submitted);
    running.swap(state.running);
    delayed.swap(state.delayed);
}

} // namespace trelundo::test
