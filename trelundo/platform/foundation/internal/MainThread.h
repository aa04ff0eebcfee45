#pragma once

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

/// Whether this is the main thread. True on every thread while none is claimed.
bool isMainThread();

/// Ends the program with a message that names `what` and the rule when this is not the main thread.
void requireMainThread(char const* what);

} // namespace trelundo
