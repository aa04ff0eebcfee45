#include "trelundo/platform/window/WindowShell.h"

#include "trelundo/platform/foundation/internal/MainThread.h"
#include "trelundo/platform/window/internal/DesktopApplication.h"
#include "trelundo/platform/window/internal/DeviceWindow.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <utility>

namespace trelundo {

namespace {

constexpr double screenShare = 0.95;  // of the desktop that a window may take, its frame included
constexpr int titleBarAllowance = 40; // desktop pixels

/// At most 1: how much smaller than its points the device is shown so that it fits the desktop.
double fittingZoom(CGSize points, bool landscape) {
    if (landscape) std::swap(points.width, points.height);
    auto const desktop = QGuiApplication::primaryScreen()->availableSize();
    auto const width = desktop.width() * screenShare;
    auto const height = desktop.height() * screenShare - titleBarAllowance;
    return std::clamp(std::min(width / points.width, height / points.height), 0.1, 1.0);
}

} // namespace

struct WindowShell::State {
    State(DeviceProfile const& device, bool landscape)
        : window(device, landscape, fittingZoom(device.points, landscape)) {}

    DeviceWindow window;
    std::function<void()> closed;
    QEventLoop loop;
};

bool WindowShell::isAvailable() { return canReachDesktop(); }

Result<std::unique_ptr<WindowShell>> WindowShell::open(int& argc, char** argv, Configuration configuration) {
    requireMainThread("a shell");
    if (auto const started = startDesktop(argc, argv); !started) return started.error();
    return std::unique_ptr<WindowShell>(new WindowShell(configuration));
}

WindowShell::WindowShell(Configuration const& configuration)
    : state_(std::make_unique<State>(*configuration.device, configuration.landscape)) {
    state_->window.setTitle(QString::fromStdString(configuration.title));
    state_->window.setClosedListener([this] {
        state_->loop.quit();
        if (auto const closed = state_->closed) closed();
    });
}

WindowShell::~WindowShell() { state_->window.setClosedListener(nullptr); }

UIWindow& WindowShell::window() { return state_->window.shell().window(); }

EmbeddedShell& WindowShell::embedded() { return state_->window.shell(); }

void WindowShell::show() { state_->window.start(); }

int WindowShell::run() {
    show();
    return state_->loop.exec();
}

void WindowShell::quit() { state_->window.close(); }

void WindowShell::setListener(std::function<void(WindowPlacement const&)> listener) {
    state_->window.setListener(std::move(listener));
}

void WindowShell::setClosedListener(std::function<void()> listener) { state_->closed = std::move(listener); }

} // namespace trelundo
