#include "trelundo/platform/uikit/views/UIScreen.h"

#include "trelundo/platform/foundation/Bundle.h"
#include "trelundo/platform/foundation/Locale.h"
#include "trelundo/platform/foundation/internal/Context.h"

#include <utility>

namespace trelundo {

namespace {

UIUserInterfaceLayoutDirection directionOfLanguage() {
    return Locale{Bundle::applicationLocalization()}.isRightToLeft()
               ? UIUserInterfaceLayoutDirection::rightToLeft
               : UIUserInterfaceLayoutDirection::leftToRight;
}

} // namespace

UIScreen::UIScreen()
    : device_(*DeviceProfile::find("phone-390x844"))
    , direction_(directionOfLanguage()) {
    traitsDidChange();
}

UIScreen& UIScreen::main() {
    return Context::current().part<UIScreen>([] { return new UIScreen; });
}

void UIScreen::configure(DeviceProfile const& device, bool landscape) {
    device_ = device;
    isLandscape_ = landscape;
    traitsDidChange();
}

void UIScreen::setUserInterfaceStyle(UIUserInterfaceStyle style) {
    style_ = style;
    traitsDidChange();
}

void UIScreen::setUserInterfaceLayoutDirection(std::optional<UIUserInterfaceLayoutDirection> direction) {
    chosenDirection_ = direction;
    updateUserInterfaceLayoutDirection();
}

void UIScreen::updateUserInterfaceLayoutDirection() {
    auto const direction = chosenDirection_ ? *chosenDirection_ : directionOfLanguage();
    if (std::exchange(direction_, direction) != direction) traitsDidChange();
}

void UIScreen::traitsDidChange() { UITraitCollection::setScreenTraits(traitCollection()); }

CGRect UIScreen::bounds() const {
    auto const points = device_.points;
    return isLandscape_ ? CGRect{0, 0, points.height, points.width}
                        : CGRect{0, 0, points.width, points.height};
}

UITraitCollection UIScreen::traitCollection() const {
    UITraitCollection traits;
    traits.userInterfaceIdiom = device_.idiom;
    traits.horizontalSizeClass = isLandscape_ ? device_.landscapeHorizontal : device_.portraitHorizontal;
    traits.verticalSizeClass = isLandscape_ ? device_.landscapeVertical : device_.portraitVertical;
    traits.userInterfaceStyle = style_;
    traits.layoutDirection = direction_ == UIUserInterfaceLayoutDirection::rightToLeft
                                 ? UITraitLayoutDirection::rightToLeft
                                 : UITraitLayoutDirection::leftToRight;
    traits.displayScale = device_.scale;
    return traits;
}

} // namespace trelundo
