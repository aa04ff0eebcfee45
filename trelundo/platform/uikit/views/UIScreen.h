#pragma once

#include "trelundo/platform/graphics/Geometry.h"
#include "trelundo/platform/uikit/views/DeviceProfile.h"     // IWYU pragma: export
#include "trelundo/platform/uikit/views/UITraitCollection.h" // IWYU pragma: export

#include <optional>

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
    /// What was set; none: the direction follows the language.
    std::optional<UIUserInterfaceLayoutDirection> chosenLayoutDirection() const { return chosenDirection_; }
    /// For UIApplication, which tells the windows. Absent: the direction of
    /// Bundle::applicationLocalization().
    void setUserInterfaceLayoutDirection(std::optional<UIUserInterfaceLayoutDirection> direction);
    /// Takes over what the user's languages or the bundles have come to say; windows do so before each
    /// layout.
    void updateUserInterfaceLayoutDirection();

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
    std::optional<UIUserInterfaceLayoutDirection> chosenDirection_;
    UIUserInterfaceLayoutDirection direction_ = UIUserInterfaceLayoutDirection::leftToRight;
};

} // namespace trelundo
