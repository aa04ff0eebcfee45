#pragma once

#include "trelundo/platform/uikit/views/UIScreen.h"
#include "trelundo/platform/uikit/views/UIWindow.h"

#include <vector>

namespace trelundo {

/// The windows and the language direction of the current shell (UIScreen::main()), and the beat of its
/// frames.
class UIApplication {
public:
    static UIApplication& shared();

    /// Direction of the language that the application is shown in (Bundle::applicationLocalization()), unless
    /// another one was set.
    UIUserInterfaceLayoutDirection userInterfaceLayoutDirection() const;
    /// Overrides the language's direction; absent: no more. Windows take the new direction over at once, and
    /// that of a new language before their next layout.
    void setUserInterfaceLayoutDirection(std::optional<UIUserInterfaceLayoutDirection> direction);

    std::vector<UIWindow*> const& windows() const { return UIWindow::visibleWindows(); }
    UIWindow* keyWindow() const { return UIWindow::keyWindow(); }

    /// One frame at Clock::current(): animations advance, display links fire, the main queue has its turn,
    /// and layout is brought up to date. Shells call it once per displayed frame.
    void frame();
    /// A main-queue turn and layout without advancing animations (after input).
    void turn();
    /// Whether frames are needed without further input.
    bool needsFrames() const;

private:
    UIApplication();
    void layoutWindows();
    std::vector<Ref<UIWindow>> strongWindows() const;
};

} // namespace trelundo
