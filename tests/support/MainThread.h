#pragma once

#include "tests/support/MainQueue.h"
#include "trelundo/platform/coreanimation/internal/AnimationRegistry.h"

namespace trelundo::test {

/// Drops what is pending on the main queue and among the animations at the end of a scope.
struct MainThreadScope {
    MainThreadScope() = default;
    ~MainThreadScope() { clear(); }
    MainThreadScope(MainThreadScope const&) = delete;
    MainThreadScope& operator=(MainThreadScope const&) = delete;

    static void clear() {
        AnimationRegistry::shared().reset();
        clearMainQueue();
    }
};

} // namespace trelundo::test
