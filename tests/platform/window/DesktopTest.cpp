#include "trelundo/platform/window/OffscreenShell.h"
#include "trelundo/platform/window/internal/WheelScrolling.h"

#include "trelundo/platform/uikit/collection/UIScrollView.h"

#include <gtest/gtest.h>

namespace trelundo {

TEST(ResizedProfileTest, IsTheDeviceItselfAtItsOwnSizeAndElseTakesSizeClassesFromTheNewOne) {
    auto const& phone = *DeviceProfile::find("phone-430x932");
    EXPECT_EQ(phone.resizedTo({430, 932}).landscapeHorizontal, phone.landscapeHorizontal);
    EXPECT_EQ(phone.resizedTo({932, 430}).points, phone.points);
    auto const& tablet = *DeviceProfile::find("tablet-820x1180");
    auto const narrow = tablet.resizedTo({438, 1180});
    EXPECT_EQ(narrow.points, (CGSize{438, 1180}));
    EXPECT_EQ(narrow.portraitHorizontal, UIUserInterfaceSizeClass::compact);
    EXPECT_EQ(narrow.portraitVertical, UIUserInterfaceSizeClass::regular);
    EXPECT_EQ(tablet.resizedTo({1000, 800}).landscapeHorizontal, UIUserInterfaceSizeClass::regular);
    auto const wide = tablet.resizedTo({900, 400});
    EXPECT_EQ(wide.points, (CGSize{400, 900}));
    EXPECT_EQ(wide.landscapeHorizontal, UIUserInterfaceSizeClass::compact)
        << "too low for a tablet's layouts";
    EXPECT_EQ(wide.landscapeVertical, UIUserInterfaceSizeClass::compact);
    EXPECT_EQ(wide.nativePixels, (CGSize{800, 1800}));
}

TEST(WheelScrollingTest, MovesTheInnermostViewWithRoomAndStopsAtTheEdges) {
    OffscreenShell shell({.device = DeviceProfile::find("phone-375x667")});
    auto const page = make<UIScrollView>(CGRect{0, 0, 375, 667});
    page->setContentSize({375, 1000});
    auto const strip = make<UIScrollView>(CGRect{0, 0, 375, 100});
    strip->setContentSize({500, 100});
    page->addSubview(strip);
    shell.window().addSubview(page);
    shell.advance(0);
    // An upright wheel moves a strip sideways, and the page once the strip has no more room.
    auto const top = page->contentOffset().y;
    for (auto const& [x, y] : {CGPoint{100, top}, {125, top}, {125, top + 100}}) {
        EXPECT_TRUE(scrollByWheel(shell.window(), {50, 50}, 0, 100));
        EXPECT_EQ(strip->contentOffset().x, x);
        EXPECT_EQ(page->contentOffset().y, y);
    }
    page->setScrollEnabled(false);
    EXPECT_FALSE(scrollByWheel(shell.window(), {50, 500}, 0, 100));
    EXPECT_FALSE(scrollByWheel(shell.window(), {5000, 500}, 0, 100));
}

} // namespace trelundo
