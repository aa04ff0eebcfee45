#pragma once

#include "trelundo/platform/graphics/Geometry.h"
#include "trelundo/platform/uikit/views/UITraitCollection.h"

#include <span>
#include <string_view>

namespace trelundo {

/// One class of devices: sizes in portrait points, pixels as built.
struct DeviceProfile {
    std::string_view name; // "phone-390x844"
    UIUserInterfaceIdiom idiom;
    CGSize points;
    double scale;
    CGSize nativePixels;
    UIEdgeInsets portraitInsets; // safe area
    UIEdgeInsets landscapeInsets;
    UIUserInterfaceSizeClass portraitHorizontal, portraitVertical;
    UIUserInterfaceSizeClass landscapeHorizontal, landscapeVertical;

    /// All known classes, small phones first.
    static std::span<DeviceProfile const> all();
    /// Null when the name is unknown.
    static DeviceProfile const* find(std::string_view name);
    /// Whether `size`, upright or turned, is this device's, give or take less than `tolerance` points.
    bool hasSize(CGSize size, double tolerance) const;
    /// This device as it is when its window has been pulled to `size` (width by height as seen): without the
    /// insets of its cut-out and its status bar. At its own size, upright or turned, it is the device itself.
    DeviceProfile resizedTo(CGSize size) const;
};

} // namespace trelundo
