#include "tests/support/Products.h"
#include "tests/support/ScopedState.h"
#include "tests/support/ScreenFixture.h"
#include "trelundo/kit/screens/subscription/PremiumV2ViewController.h"
#include "trelundo/kit/screens/subscription/PremiumV3ViewController.h"
#include "trelundo/kit/screens/subscription/PremiumV4ViewController.h"
#include "trelundo/kit/screens/subscription/PremiumV5ViewController.h"
#include "trelundo/kit/screens/subscription/PremiumV6ViewController.h"
#include "trelundo/kit/screens/subscription/PremiumViewController.h"

#include <algorithm>

namespace trelundo::test {
namespace {

/// Paywalls in a window that its user pulls to any size.
template <class Screen> class DesktopWindowTest : public ScreenFixture {
protected:
    DesktopWindowTest() { show(paywall<Screen>({yearly(), monthly()})); }

    void pull(double width, double height) {
        shell.embedded().setScreen({.size = {width, height}, .device = DeviceProfile::find("phone-390x844")});
        shell.advance(1);
    }
    /// The one product of the trial paywall has no button of its own.
    static constexpr int planCount = std::is_same_v<Screen, PremiumV6ViewController> ? 0 : 2;
    /// Whether all of it is in the window and is not empty.
    bool isWhole(UIView const& view) {
        auto const frame = view.convertRectTo(view.bounds(), nullptr);
        auto const window = shell.window().bounds();
        return !frame.isEmpty() && frame.minX() >= 0 && frame.minY() >= 0 && frame.maxX() <= window.maxX() &&
               frame.maxY() <= window.maxY();
    }
};

using Screens = testing::Types<PremiumViewController, PremiumV2ViewController, PremiumV3ViewController,
                               PremiumV4ViewController, PremiumV5ViewController, PremiumV6ViewController>;
TYPED_TEST_SUITE(DesktopWindowTest, Screens);

TYPED_TEST(DesktopWindowTest, KeepsPlansAndContinueInTheWindowAtAnySizeAndTellsNoWarningTwice) {
    for (auto const size : {CGSize{640, 480}, CGSize{160, 160}, CGSize{160, 900}, CGSize{1000, 300},
                            CGSize{900, 700}, CGSize{1280, 960}}) {
        SCOPED_TRACE(std::to_string(size.width) + " x " + std::to_string(size.height));
        RecordedWarnings warnings;
        this->pull(size.width, size.height);
        int plans = 0;
        for (; auto const button = this->planButton(plans); ++plans)
            EXPECT_TRUE(this->isWhole(*button)) << plans;
        EXPECT_EQ(plans, this->planCount);
        EXPECT_TRUE(this->isWhole(*this->template find<UIButton>("continueButton")));
        std::ranges::sort(warnings.lines);
        EXPECT_EQ(std::ranges::adjacent_find(warnings.lines), warnings.lines.end());
    }
}

} // namespace
} // namespace trelundo::test
