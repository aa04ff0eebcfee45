#pragma once

#include "trelundo/platform/uikit/views/UIScreen.h"

namespace trelundo {

/// A call at the window system that the environment names. It stays connected for as long as it lives: a
/// server may start over when its only visitor leaves, and would then drop the application that is just
/// coming.
class DisplayProbe {
public:
    DisplayProbe();
    ~DisplayProbe();
    DisplayProbe(DisplayProbe const&) = delete;
    DisplayProbe& operator=(DisplayProbe const&) = delete;

    bool answers() const { return answers_; }

private:
    bool answers_ = false;
    int socket_ = -1;
};

/// `device` as it is when its window has been pulled to `points` (width by height as seen). At its own size,
/// upright or turned, it is the device itself. Its `name` refers to that of `device`.
DeviceProfile resizedProfile(DeviceProfile const& device, CGSize points);

} // namespace trelundo
