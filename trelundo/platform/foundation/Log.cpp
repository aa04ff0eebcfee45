#include "trelundo/platform/foundation/Log.h"

#include <cstdio>
#include <fmt/core.h>
#include <mutex>

namespace trelundo {

namespace {

struct Sink {
    std::mutex mutex;
    std::function<void(std::string_view)> write;
};

Sink& sink() {
    static auto& instance = *new Sink; // outlives every static object that may warn
    return instance;
}

} // namespace

void logWarning(std::string_view text) {
    auto write = [] {
        std::lock_guard const lock{sink().mutex};
        return sink().write;
    }();
    // Called without the lock, for a sink may itself warn.
    if (write) {
        write(text);
    } else {
        fmt::print(stderr, "{}\n", text);
    }
}

void setWarningSink(std::function<void(std::string_view)> write) {
    std::lock_guard const lock{sink().mutex};
    std::swap(sink().write, write);
}

} // namespace trelundo
