#include "tests/support/Products.h"
#include "tests/support/ScreenFixture.h"
#include "trelundo/kit/screens/subscription/PremiumV2ViewController.h"
#include "trelundo/kit/screens/subscription/PremiumV3ViewController.h"
#include "trelundo/kit/screens/subscription/PremiumV4ViewController.h"
#include "trelundo/kit/screens/subscription/PremiumV5ViewController.h"
#include "trelundo/kit/screens/subscription/PremiumV6ViewController.h"
#include "trelundo/kit/screens/subscription/PremiumViewController.h"
#include "trelundo/platform/foundation/Log.h"

#include <map>

namespace trelundo::test {
namespace {

/// What is told while it lives, by how often.
class Warnings {
public:
    Warnings() {
        setWarningSink([this](std::string_view text) { ++count_[std::string(text)]; });
    }
    ~Warnings() { setWarningSink(nullptr); }
    Warnings(Warnings const&) = delete;
    Warnings& operator=(Warnings const&) = delete;

    /// The first that was told more than once; empty when none was.
    std::string repeated() const {
        for (auto const& [text, count] : count_)
            if (count > 1) return text;
        return {};
    }

private:
    std::map<std::string, int> count_;
};

/// Paywalls in a window that its user pulls to any size.
template <class Screen> class DesktopWindowTest : public ScreenFixture {
protected:
    DesktopWindowTest() {
        auto const screen = make<Screen>();
        if constexpr (requires { screen->setProducts({}); }) screen->setProducts({yearly(), monthly()});
        if constexpr (requires { screen->setProduct(nullptr); }) {
            screen->setProduct(yearly());
            planCount = 0; // the one product has no button of its own
        }
        if constexpr (requires { screen->setFeatures({}); }) screen->setFeatures({{"All Templates", "none"}});
        show(screen);
    }

    void pull(double width, double height) {
        shell.embedded().setScreen({.size = {width, height}, .device = DeviceProfile::find("phone-390x844")});
        shell.advance(1);
    }
    int planCount = 2;
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
        Warnings const warnings;
        this->pull(size.width, size.height);
        int plans = 0;
        for (; auto const button = this->planButton(plans); ++plans)
            EXPECT_TRUE(this->isWhole(*button)) << plans;
        EXPECT_EQ(plans, this->planCount);
        EXPECT_TRUE(this->isWhole(*this->template find<UIButton>("continueButton")));
        EXPECT_EQ(warnings.repeated(), "");
    }
}

} // namespace
} // namespace trelundo::test
