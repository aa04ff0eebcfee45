#include "trelundo/kit/controls/GradientView.h"
#include "trelundo/platform/window/OffscreenShell.h"

#include <gtest/gtest.h>

namespace trelundo::test {
namespace {

using Colors = std::vector<CGColor>;

TEST(GradientViewTest, EachValueSendsItsOwnPairAndNothingElse) {
    auto const gradient = make<GradientView>();
    auto& layer = gradient->gradientLayer();
    EXPECT_FALSE(layer.colors());
    gradient->setEndColor(UIColor{1, 0, 0});
    EXPECT_EQ(layer.colors(), (Colors{{0, 0, 0, 1}, {1, 0, 0, 1}}));
    EXPECT_FALSE(layer.locations());

    gradient->setStartLocation(1.5);
    EXPECT_EQ(layer.locations(), (std::vector{1.5, 1.0})) << "passed on unchecked";
    gradient->setEndLocation(-1);
    EXPECT_EQ(layer.locations(), (std::vector{1.5, -1.0}));

    gradient->setHorizontalMode(true);
    EXPECT_EQ(layer.startPoint(), (CGPoint{0, 0.5}));
    EXPECT_EQ(layer.endPoint(), (CGPoint{1, 0.5}));
    gradient->setHorizontalMode(false);
    EXPECT_EQ(layer.startPoint(), (CGPoint{0.5, 0}));
    EXPECT_EQ(layer.endPoint(), (CGPoint{0.5, 1}));
}

TEST(GradientViewTest, FollowsTheWindowsAppearance) {
    OffscreenShell shell{{.device = DeviceProfile::find("phone-320x568")}};
    shell.window().setRootViewController(make<UIViewController>());
    auto const gradient = make<GradientView>();
    gradient->setStartColor(UIColor::dynamic([](UITraitCollection const& traits) {
        return traits.userInterfaceStyle == UIUserInterfaceStyle::dark ? UIColor{0, 0, 1} : UIColor{0, 1, 0};
    }));
    shell.window().addSubview(gradient);
    shell.advance(0.1);
    EXPECT_EQ(gradient->gradientLayer().locations(), (std::vector{0.0, 1.0}))
        << "sent on entering the window";
    EXPECT_EQ(gradient->gradientLayer().colors(), (Colors{{0, 1, 0, 1}, {1, 1, 1, 1}}));
    shell.setUserInterfaceStyle(UIUserInterfaceStyle::dark);
    shell.advance(0.1);
    EXPECT_EQ(gradient->gradientLayer().colors(), (Colors{{0, 0, 1, 1}, {1, 1, 1, 1}}));
    shell.setUserInterfaceStyle(UIUserInterfaceStyle::light);
}

} // namespace
} // namespace trelundo::test
