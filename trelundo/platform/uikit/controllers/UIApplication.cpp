#include "trelundo/platform/uikit/controllers/UIApplication.h"

#include "trelundo/platform/coreanimation/CADisplayLink.h"
#include "trelundo/platform/coreanimation/CATransaction.h"
#include "trelundo/platform/foundation/Clock.h"
#include "trelundo/platform/foundation/DispatchQueue.h"
#include "trelundo/platform/foundation/RunLoop.h"

namespace trelundo {

UIApplication::UIApplication() {
    RunLoop::main().addBeforeSleepObserver(0, [this] { layoutWindows(); });
}

UIApplication& UIApplication::shared() {
    static UIApplication application;
    return application;
}

UIUserInterfaceLayoutDirection UIApplication::userInterfaceLayoutDirection() const {
    UIScreen::main().updateUserInterfaceLayoutDirection();
    return UIScreen::main().userInterfaceLayoutDirection();
}

void UIApplication::setUserInterfaceLayoutDirection(std::optional<UIUserInterfaceLayoutDirection> direction) {
    UIScreen::main().setUserInterfaceLayoutDirection(direction);
    for (auto const& window : strongWindows()) window->followLayoutDirection();
}

void UIApplication::frame() {
    CATransaction::advanceFrame();
    CADisplayLink::fire(Clock::current().now());
    turn();
}

void UIApplication::turn() { RunLoop::main().runTurn(); }

bool UIApplication::needsFrames() const {
    return CATransaction::hasWork() || CADisplayLink::hasAny() || DispatchQueue::main().hasReady();
}

void UIApplication::layoutWindows() {
    for (auto const& window : strongWindows()) window->layoutWindow();
}

/// Callbacks during a walk over the windows may close any of them.
std::vector<Ref<UIWindow>> UIApplication::strongWindows() const {
    std::vector<Ref<UIWindow>> result;
    for (auto* window : windows()) result.push_back(strong(*window));
    return result;
}

} // namespace trelundo
