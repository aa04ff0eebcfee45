#pragma once

#include "trelundo/platform/graphics/Geometry.h"
#include "trelundo/platform/uikit/views/DeviceProfile.h"     // IWYU pragma: export
#include "trelundo/platform/uikit/views/UITraitCollection.h" // IWYU pragma: export

namespace trelundo {

/// A display. `nativeBounds` is in pixels and always portrait.
class UIScreen {
public:
    /// That of the current shell: inside a call of a shell or of one of its windows its own, elsewhere that
    /// of the shell that was made current last.
    static UIScreen& main();

    DeviceProfile const& device() const { return device_; }
    bool isLandscape() const { return isLandscape_; }
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
        return isLandscape_ ? device_.landscapeInsets : device_.portraitInsets;
    }
    UITraitCollection traitCollection() const;

private:
    UIScreen();
    void traitsDidChange();

    DeviceProfile device_;
    bool isLandscape_ = false;
    UIUserInterfaceStyle style_ = UIUserInterfaceStyle::light;
    UIUserInterfaceLayoutDirection direction_ = UIUserInterfaceLayoutDirection::leftToRight;
};

} // namespace trelundo
