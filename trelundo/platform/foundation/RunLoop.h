#pragma once

#include <functional>
#include <memory>

namespace trelundo {

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
