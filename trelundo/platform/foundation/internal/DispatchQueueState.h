#pragma once

#include "trelundo/platform/foundation/DispatchQueue.h"

#include <cstdint>
#include <deque>
#include <mutex>
#include <vector>

namespace trelundo {

struct DispatchQueue::State {
    struct Job {
        double time; // Clock::now() from which the job is ready
        std::uint64_t number;
        Block block;

        bool isBefore(Job const& other) const {
            return time != other.time ? time < other.time : number < other.number;
        }
    };

    std::mutex mutex;
    std::deque<Job> submitted;
    std::vector<Job> delayed; // a heap whose front comes first
    std::deque<Job> running;  // what is left of the current turn
    bool isRunning = false;
    std::uint64_t nextNumber = 0;
    Block wakeUp;

    bool hasDue(double now) const { return !delayed.empty() && delayed.front().time <= now; }

    Job takeFirstDelayed();
    /// Moves everything that is ready into `running`. A delayed job takes its place among those submitted at
    /// the moment of its deadline.
    void beginTurn();
    Block takeNext();
    /// The clock goes on at another time: what is delayed keeps the time that is left.
    void shift(double seconds);

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

} // namespace trelundo
