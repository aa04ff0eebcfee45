#pragma once

#include <functional>
#include <memory>

namespace trelundo {

/// The serial queue of the main thread. Blocks run later, never inside the call that submits them, one at a
/// time, in the order submitted (delayed ones in the order of their deadlines). Submitting is safe from any
/// thread.
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
    /// Clock::now() of the next delayed block; infinity when there is none.
    double nextDeadline() const;
    /// Drops everything submitted (a test's clean slate).
    void removeAll();

    /// Called from the submitting thread whenever work arrives, so that a shell can wake its event loop.
    void setWakeUp(Block wakeUp);

private:
    DispatchQueue();
    ~DispatchQueue();
    struct State;
    std::unique_ptr<State> state_;
};

/// The main thread's loop: dispatched blocks first, then the observers that prepare the next frame.
class RunLoop {
public:
    static RunLoop& main();

    /// One turn: the ready blocks, then the before-sleep observers in ascending order.
    void runTurn();
    /// Turns until no block is ready (bounded by `limit` turns).
    void runUntilIdle(int limit = 1000);
    /// Registers what runs before the loop sleeps (layout, then the commit of animations). Returns an id.
    int addBeforeSleepObserver(int order, std::function<void()> observer);
    void removeBeforeSleepObserver(int id);

private:
    RunLoop();
    ~RunLoop();
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace trelundo
