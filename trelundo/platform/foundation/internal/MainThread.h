#pragma once

#include "trelundo/platform/foundation/MainThread.h"

namespace trelundo {

/// While at least one of these lives, the thread that made the first is the main thread. Claiming it from
/// another one ends the program with a message.
class MainThreadClaim {
public:
    MainThreadClaim();
    ~MainThreadClaim();
    MainThreadClaim(MainThreadClaim const&) = delete;
    MainThreadClaim& operator=(MainThreadClaim const&) = delete;
};

/// The caller runs the main queue, which makes its thread the main one while none is claimed.
void noteMainQueueRuns();

/// Ends the program with a message that names `what` and the rule when the main thread is claimed by another.
void requireMainThread(char const* what);

} // namespace trelundo
