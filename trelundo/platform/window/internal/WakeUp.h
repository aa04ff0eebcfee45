#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>

namespace trelundo {

/// Asks a host for a frame, from any thread and at most once between two frames, whenever work arrives on the
/// main queue.
class WakeUp {
public:
    static std::shared_ptr<WakeUp> make(std::function<void()> callback);

    /// Any thread.
    void ask();
    /// The host has gone: it hears nothing after this. Main thread only.
    void end();

    /// A frame or turn on the main thread: what asked is answered, and what its own blocks ask for is known
    /// at its end without a call.
    class Frame {
    public:
        explicit Frame(WakeUp& wakeUp);
        ~Frame();
        Frame(Frame const&) = delete;
        Frame& operator=(Frame const&) = delete;

    private:
        WakeUp& wakeUp_;
        bool wasInFrame_;
    };

private:
    std::mutex mutex_;
    std::function<void()> callback_;
    std::atomic<bool> isAsked_ = false;
    bool isInFrame_ = false; // main thread only
    int id_ = 0;             // on the main queue
};

} // namespace trelundo
