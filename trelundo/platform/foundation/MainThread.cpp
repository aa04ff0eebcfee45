#include "trelundo/platform/foundation/internal/MainThread.h"

#include "trelundo/platform/foundation/FatalError.h"

#include <atomic>
#include <string>
#include <thread>

namespace trelundo {

namespace {

std::atomic<std::thread::id> owner; // no thread while there are no claims
std::atomic<int> claims = 0;

} // namespace

MainThreadClaim::MainThreadClaim() {
    requireMainThread("a shell");
    owner = std::this_thread::get_id();
    ++claims;
}

MainThreadClaim::~MainThreadClaim() {
    if (--claims == 0) owner = std::thread::id();
}

bool isMainThread() {
    auto const id = owner.load(std::memory_order_relaxed);
    return id == std::thread::id() || id == std::this_thread::get_id();
}

void requireMainThread(char const* what) {
    if (isMainThread()) return;
    fatalError(
        std::string("The main thread rule was broken: ") + what +
        " was used on another thread. Views, controllers, windows and shells belong to the thread that "
        "made the first shell; from other threads hand the work to DispatchQueue::main().async()");
}

} // namespace trelundo
