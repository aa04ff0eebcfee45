#include "trelundo/platform/foundation/Clock.h"

#include "trelundo/platform/foundation/internal/DispatchQueueState.h"

#include <chrono>

namespace trelundo {

namespace {

using Seconds = std::chrono::duration<double>;

class SystemClock final : public Clock {
public:
    double now() const override {
        return Seconds{std::chrono::steady_clock::now().time_since_epoch()}.count();
    }
    double date() const override {
        using namespace std::chrono;
        constexpr sys_days epoch = year{2001} / January / 1;
        return Seconds{system_clock::now() - epoch}.count();
    }
};

Clock& systemClock() {
    static auto& clock = *new SystemClock; // outlives every static object that may ask for the time
    return clock;
}

std::atomic<Clock*> chosenClock = nullptr;

} // namespace

Clock& Clock::current() {
    auto* clock = chosenClock.load();
    return clock ? *clock : systemClock();
}

void Clock::setCurrent(Clock* clock) {
    auto const before = current().now();
    chosenClock = clock;
    DispatchQueue::main().state().shift(current().now() - before);
}

} // namespace trelundo
