#include "trelundo/platform/foundation/Clock.h"

#include "trelundo/platform/foundation/internal/Context.h"
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

std::atomic<Clock*> processClock = nullptr; // null: the system's

} // namespace

Clock& resolvedClock(Clock* clock) {
    if (!clock) clock = processClock.load();
    return clock ? *clock : systemClock();
}

Clock& Clock::current() { return Context::currentClock(); }

void Clock::setCurrent(Clock* clock) {
    auto const before = Context::clockOf(nullptr).now();
    processClock = clock;
    DispatchQueue::main().state().shift(Context::clockOf(nullptr).now() - before);
}

} // namespace trelundo
