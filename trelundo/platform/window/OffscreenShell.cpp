#include "trelundo/platform/window/OffscreenShell.h"

#include "trelundo/platform/graphics/Surface.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace trelundo {

namespace {

constexpr double framesPerSecond = 60;
constexpr int finger = 1;

/// Sums of decimal steps miss whole frames by a few units in the last place.
constexpr double frameTolerance = 1e-6; // frames

EmbeddedScreen screenOf(DeviceProfile const& device, bool landscape) {
    auto size = device.points;
    if (landscape) std::swap(size.width, size.height);
    return {.size = size, .scale = device.scale, .device = &device};
}

} // namespace

OffscreenShell::OffscreenShell(Configuration configuration)
    : clock_(configuration.startDate)
    , shell_({.screen = screenOf(*configuration.device, configuration.landscape), .clock = &clock_}) {}

OffscreenShell::~OffscreenShell() = default;

void OffscreenShell::advance(double seconds) {
    if (!(seconds > 0)) return shell_.turn();
    askedFrames_ += seconds * framesPerSecond;
    while (static_cast<double>(frame_ + 1) <= askedFrames_ + frameTolerance) {
        ++frame_;
        clock_.setNow(static_cast<double>(frame_) / framesPerSecond);
        shell_.step();
    }
}

void OffscreenShell::rotate(bool landscape) { window().deviceDidTurn(landscape); }

void OffscreenShell::setUserInterfaceStyle(UIUserInterfaceStyle style) {
    shell_.setUserInterfaceStyle(style);
}

Surface const& OffscreenShell::render() {
    shell_.render();
    return shell_.pixels();
}

Result<void> OffscreenShell::snapshot(std::string const& path) { return render().writePng(path); }

void OffscreenShell::tap(CGPoint location) {
    shell_.touchBegan(finger, location);
    shell_.touchEnded(finger, location);
}

void OffscreenShell::drag(CGPoint from, double dx, double dy, double seconds) {
    auto const frames = std::max(1, static_cast<int>(std::lround(seconds * framesPerSecond)));
    shell_.touchBegan(finger, from);
    auto location = from;
    for (int frame = 1; frame <= frames; ++frame) {
        if (seconds > 0) advance(1 / framesPerSecond);
        auto const way = static_cast<double>(frame) / frames;
        location = {from.x + dx * way, from.y + dy * way};
        shell_.touchMoved(finger, location);
    }
    shell_.touchEnded(finger, location);
}

} // namespace trelundo
