#pragma once

#include "trelundo/platform/graphics/Geometry.h"
#include "trelundo/platform/uikit/views/UITraitCollection.h"

#include <span>
#include <string>
#include <string_view>

namespace trelundo {

enum class UIInterfaceOrientation : int {
    unknown = 0,
    portrait = 1,
    portraitUpsideDown = 2,
    landscapeRight = 3,
    landscapeLeft = 4,
};

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
};

/// The display. `nativeBounds` is in pixels and always portrait.
class UIScreen {
public:
    static UIScreen& main();

    DeviceProfile const& device() const { return device_; }
    bool isLandscape() const { return landscape_; }
    /// Takes effect for windows through UIWindow::screenDidChange().
    void configure(DeviceProfile const& device, bool landscape);
    void setUserInterfaceStyle(UIUserInterfaceStyle style);
    UIUserInterfaceLayoutDirection userInterfaceLayoutDirection() const { return direction_; }
    /// For UIApplication, which tells the windows.
    void setUserInterfaceLayoutDirection(UIUserInterfaceLayoutDirection direction);

    CGRect bounds() const;
    CGRect nativeBounds() const { return {0, 0, device_.nativePixels.width, device_.nativePixels.height}; }
    double scale() const { return device_.scale; }
    double nativeScale() const { return device_.nativePixels.width / device_.points.width; }
    UIEdgeInsets safeAreaInsets() const {
        return landscape_ ? device_.landscapeInsets : device_.portraitInsets;
    }
    UITraitCollection traitCollection() const;

private:
    UIScreen();
    void traitsDidChange();

    DeviceProfile device_;
    bool landscape_ = false;
    UIUserInterfaceStyle style_ = UIUserInterfaceStyle::light;
    UIUserInterfaceLayoutDirection direction_ = UIUserInterfaceLayoutDirection::leftToRight;
};

} // namespace trelundo
