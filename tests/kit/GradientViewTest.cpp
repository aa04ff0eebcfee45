#include "trelundo/kit/controls/GradientView.h"
#include "trelundo/platform/window/OffscreenShell.h"

#include <gtest/gtest.h>

namespace trelundo::test {
namespace {

using Colors = std::vector<CGColor>;

TEST(GradientViewTest, EachValueSendsItsOwnPairAndTheWindowsAppearanceAll) {
    OffscreenShell shell{{.device = DeviceProfile::find("phone-320x568")}};
    auto const gradient = make<GradientView>();
    auto& layer = gradient->gradientLayer();
    gradient->setStartColor(UIColor::dynamic([](UITraitCollection const& traits) {
        return traits.userInterfaceStyle == UIUserInterfaceStyle::dark ? UIColor{0, 0, 1} : UIColor{0, 1, 0};
    }));
    EXPECT_EQ(layer.colors(), (Colors{{0, 1, 0, 1}, {1, 1, 1, 1}}));
    EXPECT_FALSE(layer.locations());
    shell.window().addSubview(gradient);
    shell.advance(0.1);
    EXPECT_EQ(layer.locations(), (std::vector{0.0, 1.0})) << "sent on entering the window";
    shell.setUserInterfaceStyle(UIUserInterfaceStyle::dark);
    shell.advance(0.1);
    EXPECT_EQ(layer.colors(), (Colors{{0, 0, 1, 1}, {1, 1, 1, 1}}));
    gradient->setEndColor(UIColor{1, 0, 0});
    EXPECT_EQ(layer.colors(), (Colors{{0, 0, 1, 1}, {1, 0, 0, 1}}));

    gradient->setStartLocation(1.5);
    gradient->setEndLocation(-1);
    EXPECT_EQ(layer.locations(), (std::vector{1.5, -1.0})) << "passed on unchecked";
    gradient->setHorizontalMode(true);
    EXPECT_EQ(layer.startPoint(), (CGPoint{0, 0.5}));
    EXPECT_EQ(layer.endPoint(), (CGPoint{1, 0.5}));
    gradient->setHorizontalMode(false);
    EXPECT_EQ(layer.startPoint(), (CGPoint{0.5, 0}));
    EXPECT_EQ(layer.endPoint(), (CGPoint{0.5, 1}));
}

} // namespace
} // namespace trelundo::test
