#pragma once

#include <functional>

namespace trelundo {

/// Calls back once per frame of the shell that it was added in, before the frame is rendered. Main thread
/// only.
class CADisplayLink {
public:
    /// Registers `callback` (with the frame's time in seconds, Clock::now()); returns an id.
    static int add(std::function<void(double timestamp)> callback);
    static void remove(int id);
    /// Runs every registered callback; shells call it once a frame.
    static void fire(double timestamp);
    static bool hasAny();
};

} // namespace trelundo
