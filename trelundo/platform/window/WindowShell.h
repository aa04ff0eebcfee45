#pragma once

#include "trelundo/platform/foundation/Result.h"
#include "trelundo/platform/window/EmbeddedShell.h"
#include "trelundo/platform/window/WindowPlacement.h"

#include <functional>
#include <memory>
#include <string>

namespace trelundo {

/// A real window on the desktop that behaves like a device: mouse, touch, keyboard, wheel, high density,
/// resize. The desktop's event loop runs the platform's main queue. Several may be open at once. All calls
/// belong to the thread that made the first shell.
class WindowShell {
public:
    struct Configuration {
        DeviceProfile const* device; // never null
        bool landscape = false;
        std::string title = {};
    };
    /// Whether open() would find a display.
    static bool isAvailable();
    /// Opens a window with the program's own application object (of Qt), if it has one, and starts one
    /// otherwise. `argc` and `argv` are main()'s, of which what the desktop understands is removed. Fails
    /// without a display, and after an OffscreenShell or EmbeddedShell has begun to draw without one.
    static Result<std::unique_ptr<WindowShell>> open(int& argc, char** argv, Configuration configuration);
    ~WindowShell();

    UIWindow& window();
    /// What it stands on, for what is not repeated here.
    EmbeddedShell& embedded();
    /// Shows the window and returns at once: the program's own event loop serves it.
    void show();
    /// Shows the window and runs an event loop until it is closed or quit() is called. Returns the exit
    /// status.
    int run();
    /// Closes the window.
    void quit();
    /// Called whenever the window comes to stand anew: after its first frame was painted, and after a resize
    /// was taken over. Its placement tells where on the desktop a point of the device is.
    void setListener(std::function<void(WindowPlacement const&)> listener);
    /// Called when the window has been closed.
    void setClosedListener(std::function<void()> listener);

private:
    struct State;
    explicit WindowShell(Configuration const& configuration);
    std::unique_ptr<State> state_;
};

} // namespace trelundo
