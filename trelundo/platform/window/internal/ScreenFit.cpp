#include "trelundo/platform/window/internal/ScreenFit.h"

#include <algorithm>

namespace trelundo {

namespace {

constexpr CGSize smallest{320, 568}; // of all devices, upright, points
constexpr double smallestSide = 1;   // host points: a window may be pulled to nothing

UIEdgeInsets divided(UIEdgeInsets const& insets, double by) {
    return {insets.top / by, insets.left / by, insets.bottom / by, insets.right / by};
}

/// A screen of no known device, of this many pixels a point.
DeviceProfile plainProfile(CGSize points, double scale) {
    auto profile = DeviceProfile::all().front().resizedTo(points);
    profile.name = "embedded";
    profile.scale = scale;
    profile.nativePixels = {profile.points.width * scale, profile.points.height * scale};
    bool const isTablet = profile.portraitHorizontal == UIUserInterfaceSizeClass::regular;
    profile.idiom = isTablet ? UIUserInterfaceIdiom::pad : UIUserInterfaceIdiom::phone;
    return profile;
}

/// A zoomed window has whole host points, so that it can miss its device's size by a rounding.
bool isOwnSize(EmbeddedScreen const& screen, CGSize points) {
    return screen.device && screen.device->hasSize(points, std::max(1.0, 1 / screen.zoom));
}

} // namespace

ScreenFit ScreenFit::of(EmbeddedScreen const& screen) {
    CGSize const size{std::max(screen.size.width, smallestSide), std::max(screen.size.height, smallestSide)};
    CGSize points{size.width / screen.zoom, size.height / screen.zoom};
    bool const isLandscape = points.width > points.height;
    if (isOwnSize(screen, points)) return {*screen.device, isLandscape, screen.zoom};

    auto const shrink = std::min({1.0, points.width / smallest.width, points.height / smallest.height});
    auto const zoom = screen.zoom * shrink;
    points = {size.width / zoom, size.height / zoom};
    ScreenFit fit{plainProfile(points, std::max(screen.scale * zoom, 1.0)), isLandscape, zoom};
    if (screen.device) fit.profile = screen.device->resizedTo(points);
    fit.profile.portraitInsets = fit.profile.landscapeInsets = divided(screen.safeArea, zoom);
    return fit;
}

} // namespace trelundo
