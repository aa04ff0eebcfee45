#pragma once

#include <atomic>

namespace trelundo {

/// The time source of the process. The default reads the system's clocks; a virtual clock stands still until
/// it is moved. May be read from any thread.
class Clock {
public:
    virtual ~Clock() = default;
    /// Seconds since an arbitrary start, never going back.
    virtual double now() const = 0;
    /// Seconds since 2001-01-01 00:00 UTC.
    virtual double date() const = 0;

    static Clock& current();
    /// `clock` must outlive its use; null returns to the system's clocks. What the main queue delays keeps
    /// the time that is left.
    static void setCurrent(Clock* clock);
};

/// Time that moves only when told to: now() starts at 0, date() at `startDate`.
class VirtualClock : public Clock {
public:
    explicit VirtualClock(double startDate = 0)
        : startDate_(startDate) {}
    double now() const override { return now_; }
    double date() const override { return startDate_ + now_; }
    void setNow(double seconds) { now_ = seconds; }

private:
    double startDate_;
    std::atomic<double> now_ = 0; // blocks are submitted by Clock::now() from other threads
};

} // namespace trelundo
