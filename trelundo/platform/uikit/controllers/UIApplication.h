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

    /// Direction of the first preferred language that the application is localised in.
    UIUserInterfaceLayoutDirection userInterfaceLayoutDirection() const {
        return UIScreen::main().userInterfaceLayoutDirection();
    }
    /// Windows take the new direction over at once.
    void setUserInterfaceLayoutDirection(UIUserInterfaceLayoutDirection direction);

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
