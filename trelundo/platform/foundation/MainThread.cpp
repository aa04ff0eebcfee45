#include "trelundo/platform/foundation/internal/MainThread.h"

#include "trelundo/platform/foundation/FatalError.h"

#include <atomic>
#include <string>
#include <thread>

namespace trelundo {

namespace {

std::atomic<std::thread::id> mainThread = std::this_thread::get_id();
std::atomic<int> claims = 0;

} // namespace

bool isMainThread() { return mainThread.load(std::memory_order_relaxed) == std::this_thread::get_id(); }

void noteMainQueueRuns() {
    if (claims == 0) mainThread = std::this_thread::get_id();
}

MainThreadClaim::MainThreadClaim() {
    requireMainThread("a shell");
    mainThread = std::this_thread::get_id();
    ++claims;
}

MainThreadClaim::~MainThreadClaim() { --claims; }

void requireMainThread(char const* what) {
    if (isMainThread() || claims == 0) return;
    fatalError(
        std::string("The main thread rule was broken: ") + what +
        " was used on another thread. Views, controllers, windows and shells belong to the thread that "
        "made the first shell; from other threads hand the work to DispatchQueue::main().async()");
}

} // namespace trelundo
