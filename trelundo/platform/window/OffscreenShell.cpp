#include "trelundo/platform/window/OffscreenShell.h"

#include "trelundo/platform/coreanimation/internal/Compositor.h"
#include "trelundo/platform/graphics/Surface.h"
#include "trelundo/platform/graphics/internal/GraphicsSystem.h"
#include "trelundo/platform/uikit/controllers/UIApplication.h"

#include <algorithm>
#include <cmath>

namespace trelundo {

namespace {

constexpr double framesPerSecond = 60;
constexpr int finger = 1;

/// Sums of decimal steps miss whole frames by a few units in the last place.
constexpr double frameTolerance = 1e-6; // frames

} // namespace

struct OffscreenShell::State {
    DeviceProfile const* device;
    double askedFrames = 0; // since the start, with the fraction that is still owed
    std::unique_ptr<Surface> surface;
    Compositor compositor;
};

OffscreenShell::OffscreenShell(Configuration configuration)
    : clock_(configuration.startDate)
    , state_(std::make_unique<State>()) {
    startGraphics();
    Clock::setCurrent(&clock_);
    state_->device = configuration.device;
    UIScreen::main().configure(*configuration.device, configuration.landscape);
    window_ = make<UIWindow>(UIScreen::main().bounds());
    window_->makeKeyAndVisible();
}

OffscreenShell::~OffscreenShell() {
    window_ = nullptr;
    Clock::setCurrent(nullptr);
}

void OffscreenShell::advance(double seconds) {
    if (!(seconds > 0)) return UIApplication::shared().turn();
    state_->askedFrames += seconds * framesPerSecond;
    while (static_cast<double>(frame_ + 1) <= state_->askedFrames + frameTolerance) {
        ++frame_;
        clock_.setNow(static_cast<double>(frame_) / framesPerSecond);
        UIApplication::shared().frame();
    }
}

void OffscreenShell::rotate(bool landscape) { window_->deviceDidTurn(landscape); }

void OffscreenShell::setUserInterfaceStyle(UIUserInterfaceStyle style) {
    UIScreen::main().setUserInterfaceStyle(style);
    window_->screenDidChange();
}

Surface const& OffscreenShell::render() {
    window_->layoutWindow();
    auto const scale = UIScreen::main().scale();
    auto const bounds = UIScreen::main().bounds();
    auto const width = static_cast<int>(std::lround(bounds.width() * scale));
    auto const height = static_cast<int>(std::lround(bounds.height() * scale));
    auto& surface = state_->surface;
    if (!surface || surface->pixelWidth() != width || surface->pixelHeight() != height) {
        surface = std::make_unique<Surface>(width, height, scale);
        state_->compositor.invalidate();
    }
    state_->compositor.render(window_->layer(), *surface);
    return *surface;
}

Result<void> OffscreenShell::snapshot(std::string const& path) { return render().writePng(path); }

void OffscreenShell::tap(CGPoint location) {
    window_->layoutWindow();
    window_->touchBegan(finger, location);
    window_->touchEnded(finger, location);
}

void OffscreenShell::drag(CGPoint from, double dx, double dy, double seconds) {
    window_->layoutWindow();
    auto const frames = std::max(1, static_cast<int>(std::lround(seconds * framesPerSecond)));
    window_->touchBegan(finger, from);
    auto location = from;
    for (int frame = 1; frame <= frames; ++frame) {
        if (seconds > 0) advance(1 / framesPerSecond);
        auto const way = static_cast<double>(frame) / frames;
        location = {from.x + dx * way, from.y + dy * way};
        window_->touchMoved(finger, location);
    }
    window_->touchEnded(finger, location);
}

} // namespace trelundo
