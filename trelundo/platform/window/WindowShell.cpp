#include "trelundo/platform/window/WindowShell.h"

#include "trelundo/platform/window/internal/DeviceWindow.h"
#include "trelundo/platform/window/internal/DisplayProbe.h"

#include "trelundo/platform/foundation/DispatchQueue.h"
#include "trelundo/platform/graphics/internal/GraphicsSystem.h"
#include "trelundo/platform/uikit/controllers/UIApplication.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

namespace trelundo {

namespace {

constexpr double screenShare = 0.95;  // of the desktop that a window may take, its frame included
constexpr int titleBarAllowance = 40; // desktop pixels

/// Kept from the question until the application has a connection of its own.
std::unique_ptr<DisplayProbe> displayProbe;

/// At most 1: how much smaller than its points the device is shown so that it fits the desktop.
double fittingZoom(CGSize points, QSize desktop) {
    auto const width = desktop.width() * screenShare;
    auto const height = desktop.height() * screenShare - titleBarAllowance;
    return std::clamp(std::min(width / points.width, height / points.height), 0.1, 1.0);
}

} // namespace

struct WindowShell::State {
    State(int& argc, char** argv)
        : application(argc, argv) {}

    QGuiApplication application;
    Ref<UIWindow> window;
    std::unique_ptr<DeviceWindow> desktopWindow;
};

bool WindowShell::isAvailable() {
    displayProbe = std::make_unique<DisplayProbe>();
    return displayProbe->answers();
}

WindowShell::WindowShell(int& argc, char** argv, Configuration configuration)
    : state_(std::make_unique<State>(argc, argv)) {
    displayProbe.reset();
    startGraphics();
    UIScreen::main().configure(*configuration.device, configuration.landscape);
    auto const bounds = UIScreen::main().bounds();
    state_->window = make<UIWindow>(bounds);
    state_->window->makeKeyAndVisible();
    auto const zoom = fittingZoom(bounds.size, QGuiApplication::primaryScreen()->availableSize());
    state_->desktopWindow = std::make_unique<DeviceWindow>(state_->window, *configuration.device, zoom);
    state_->desktopWindow->setTitle(QString::fromStdString(configuration.title));
}

WindowShell::~WindowShell() {
    state_->desktopWindow.reset();
    state_->window = nullptr;
}

UIWindow& WindowShell::window() { return *state_->window; }

int WindowShell::run() {
    state_->desktopWindow->start();
    return QGuiApplication::exec();
}

void WindowShell::quit() { QGuiApplication::quit(); }

void WindowShell::setListener(std::function<void(WindowPlacement const&)> listener) {
    state_->desktopWindow->setListener(std::move(listener));
}

} // namespace trelundo
