#include "trelundo/platform/coreanimation/CATransaction.h"

#include "trelundo/platform/coreanimation/internal/AnimationRegistry.h"
#include "trelundo/platform/foundation/Clock.h"

#include <utility>

namespace trelundo {

void CATransaction::begin(Settings settings) { AnimationRegistry::shared().begin(std::move(settings)); }

void CATransaction::commit() { AnimationRegistry::shared().commit(); }

bool CATransaction::isAnimating() {
    auto const* settings = current();
    return settings && settings->duration > 0 && areAnimationsEnabled();
}

CATransaction::Settings const* CATransaction::current() { return AnimationRegistry::shared().current(); }

void CATransaction::setAnimationsEnabled(bool enabled) { AnimationRegistry::isEnabled = enabled; }

bool CATransaction::areAnimationsEnabled() { return AnimationRegistry::isEnabled; }

void CATransaction::advanceFrame() { AnimationRegistry::shared().advanceFrame(Clock::current().now()); }

bool CATransaction::hasWork() { return AnimationRegistry::shared().hasWork(); }

} // namespace trelundo
