#pragma once

#include "platform/uikit/views/UIScreen.h"

namespace trelundo {

/// Whether the window system that the environment names answers.
bool displayAnswers();

/// `device` as it is when its window has been pulled to `points` (width by height as seen). At its own size,
/// upright or turned, it is the device itself. Its `name` refers to that of `device`.
DeviceProfile resizedProfile(DeviceProfile const& device, CGSize points);

} // namespace trelundo
