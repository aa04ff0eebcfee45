#pragma once

#include <functional>
#include <memory>

namespace trelundo {

/// The serial queue of the main thread. Blocks run later, never inside the call that submits them, one at a
/// time, in the order submitted (delayed ones of a shell in the order of their deadlines), in the shell that
/// submitted them. Submitting is safe from any thread.
class DispatchQueue {
public:
    using Block = std::function<void()>;

    static DispatchQueue& main();

    void async(Block block);
    /// Runs `block` not before `seconds` from now by Clock::current().
    void asyncAfter(double seconds, Block block);

    /// Runs the blocks that are ready now, those that they submit for now excluded. Main thread only.
    /// Returns whether any ran.
    bool runReady();
    bool hasReady() const;
    /// Clock::now() of the next block that waits for Clock::current(); infinity when there is none.
    double nextDeadline() const;
    /// `wakeUp` is called from the submitting thread whenever work arrives, so that a shell can wake its
    /// event loop. A call may still be under way on another thread when it is removed. Returns an id.
    int addWakeUp(Block wakeUp);
    void removeWakeUp(int id);

    /// For the platform itself.
    struct State;
    State& state() { return *state_; }

private:
    DispatchQueue();
    ~DispatchQueue();
    std::unique_ptr<State> state_;
};

} // namespace trelundo
