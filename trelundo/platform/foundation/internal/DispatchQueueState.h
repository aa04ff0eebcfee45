#pragma once

#include "trelundo/platform/foundation/DispatchQueue.h"

#include <cstdint>
#include <deque>
#include <map>
#include <mutex>
#include <vector>

namespace trelundo {

class Context;

struct DispatchQueue::State {
    struct Job {
        double time; // from which the job is ready, by the clock of its context
        std::uint64_t number;
        Block block;
        Context* context; // null: nobody's

        bool isBefore(Job const& other) const {
            return time != other.time ? time < other.time : number < other.number;
        }
    };
    /// A heap whose front comes first.
    using Delayed = std::vector<Job>;

    std::mutex mutex;
    std::deque<Job> submitted;
    std::map<Context const*, Delayed> delayed; // by context, since each may have a time of its own
    std::deque<Job> running;                   // what is left of the current turn
    bool isRunning = false;
    std::uint64_t nextNumber = 0;
    std::map<int, Block> wakeUps;
    int lastWakeUp = 0;

    /// A job of what runs now, ready in `seconds`.
    Job job(double seconds, Block block);
    bool hasDue() const;
    /// Moves everything that is ready into `running`. A delayed job takes its place among those that its
    /// context submitted at the moment of its deadline.
    void beginTurn();
    Job takeNext();
    /// The clock of what belongs to nobody goes on at another time: what is delayed keeps the time that is
    /// left.
    void shift(double seconds);
    /// The jobs of `context` become nobody's and keep the time that is left.
    void release(Context const& context);

    template <class Store> void submit(Store store) {
        std::map<int, Block> wake;
        {
            std::lock_guard const lock{mutex};
            store();
            wake = wakeUps;
        }
        for (auto const& [id, wakeUp] : wake) wakeUp();
    }
};

} // namespace trelundo
