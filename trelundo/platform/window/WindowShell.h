#pragma once

#include "trelundo/platform/uikit/views/UIScreen.h"
#include "trelundo/platform/uikit/views/UIWindow.h"
#include "trelundo/platform/window/WindowPlacement.h"

#include <functional>
#include <memory>
#include <string>

namespace trelundo {

/// A real window on the desktop that behaves like a device: mouse, touch, keyboard, wheel, high density,
/// resize. Runs the platform's main queue in the desktop's event loop.
class WindowShell {
public:
    struct Configuration {
        DeviceProfile const* device; // never null
        bool landscape = false;
        std::string title;
    };
    /// Whether a display can be reached.
    static bool isAvailable();

    WindowShell(int& argc, char** argv, Configuration configuration);
    ~WindowShell();

    UIWindow& window();
    /// Shows the window and runs until it is closed or quit() is called; returns the exit status.
    int run();
    void quit();
    /// Called whenever the window comes to stand anew: after its first frame was painted, and after a resize
    /// was taken over. Its placement tells where on the desktop a point of the device is.
    void setListener(std::function<void(WindowPlacement const&)> listener);

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace trelundo
