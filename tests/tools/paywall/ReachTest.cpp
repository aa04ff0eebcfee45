#include "tests/support/ScopedState.h"
#include "tools/paywall/gallery/SampleSelection.h"
#include "tools/paywall/screens/Screens.h"
#include "tools/paywall/session/OffscreenSession.h"
#include "tools/paywall/store/StoreAccess.h"
#include "trelundo/kit/store/PremiumManager.h"
#include "trelundo/platform/uikit/controls/UIControl.h"
#include "trelundo/platform/uikit/text/UILabel.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <iterator>

namespace trelundo::paywall::test {
namespace {

using Controls = std::vector<Ref<UIControl>>;

void collectControls(UIView const& view, Controls& controls) {
    for (auto const& child : view.subviews()) {
        if (child->isHidden()) continue;
        if (dynamic_cast<UIControl*>(child.get())) controls.push_back(cast<UIControl>(child));
        collectControls(*child, controls);
    }
}

std::string nameOf(UIControl const& control) {
    auto const& name = control.accessibilityIdentifier();
    return name.empty() ? control.accessibilityLabel() : name;
}

bool liesIn(UIView const* view, std::string_view name) {
    for (; view; view = view->superview())
        if (view->accessibilityIdentifier() == name) return true;
    return false;
}

bool isControl(UIView const* view) {
    for (; view; view = view->superview())
        if (dynamic_cast<UIControl const*>(view)) return true;
    return false;
}

/// What may vanish under something that is seen in its place where a screen is too low for all.
bool isLink(UIControl const& control) {
    return control.accessibilityIdentifier() == "unlockButton" || liesIn(&control, "linksStackView");
}

/// Whether a finger at `point` reaches the control, or finds over a link what hides it.
bool isReached(UIControl const& control, UIView const* hit) {
    if (!hit) return false;
    return hit->isDescendantOf(control) || (isLink(control) && (isControl(hit) || liesIn(hit, "offerView")));
}

/// The controls of the screen that a finger on the middle of what is seen of them does not reach.
std::string unreachable(OffscreenSession& shown) {
    auto& window = shown.shell.window();
    Controls controls;
    collectControls(*shown.session.screen()->view(), controls);
    EXPECT_FALSE(controls.empty());
    std::string names;
    for (auto const& control : controls) {
        auto const seen = control->convertRectTo(control->bounds(), nullptr).intersection(window.bounds());
        if (seen.isEmpty()) continue;
        auto const hit = window.hitTest({seen.midX(), seen.midY()});
        if (!isReached(*control, hit.get())) names += nameOf(*control) + ", ";
    }
    return names;
}

struct Sample {
    std::string screen;
    int plans;
};

std::vector<std::string> const plans{"app.premium.yearly", "app.premium.monthly", "app.premium.weekly"};

/// The offers' labels that tell a price, as far as the screen has them.
std::vector<Ref<UILabel>> priceLabels(UIView const& view) {
    std::vector<Ref<UILabel>> found;
    for (auto const& child : view.subviews()) {
        for (auto const* name : {"infoLine1Label", "infoLine2Label", "offerLabel", "infoLabel"})
            if (child->accessibilityIdentifier() == name) found.push_back(cast<UILabel>(child));
        std::ranges::copy(priceLabels(*child), std::back_inserter(found));
    }
    return found;
}

/// The prices that are not whole on the screen.
std::string lostPrices(OffscreenSession& shown) {
    auto const& window = shown.shell.window();
    std::string names;
    for (auto const& label : priceLabels(*shown.session.screen()->view())) {
        auto const area = label->convertRectTo(label->bounds(), nullptr);
        bool const isWhole = label->fit().truncated == false && area.minY() >= 0 &&
                             area.maxY() <= window.bounds().maxY() &&
                             area.height() >= label->intrinsicContentSize().height * 0.5;
        if (!isWhole) names += label->accessibilityIdentifier() + ", ";
    }
    return names;
}

class ReachTest : public testing::TestWithParam<Sample> {
protected:
    /// Shows the screen on `device` and looks at it upright and turned.
    void look(DeviceProfile const& device) {
        PremiumManager::sharedInstance().setState(PremiumManagerState::notStarted);
        auto const& [screen, count] = GetParam();
        Options options;
        options.screen = screen;
        options.products = {plans.begin(), plans.begin() + count};
        options.device = &device;
        selectSampleProduct(options, catalogue);
        OffscreenSession shown{options, log, catalogue};
        shown.shell.advance(0.1);
        EXPECT_EQ(unreachable(shown), "") << device.name;
        shown.shell.rotate(true);
        shown.shell.advance(0.1);
        EXPECT_EQ(unreachable(shown), "") << device.name << " in landscape";
        if (screen.starts_with("OfferV")) {
            EXPECT_EQ(lostPrices(shown), "") << device.name;
        }
    }

    trelundo::test::RecordedWarnings warnings; // of layouts that have no room
    EventLog log;
    StoreConfiguration const catalogue = loadCatalogue(std::nullopt);
};

TEST_P(ReachTest, EveryControlIsUnderTheFingerOrOffTheScreen) {
    for (auto const& device : DeviceProfile::all()) look(device);
}

std::vector<Sample> samples() {
    std::vector<Sample> all;
    for (auto const& screen : screens())
        for (int const count : {2, 3}) all.push_back({screen.name, count});
    return all;
}

INSTANTIATE_TEST_SUITE_P(Screens, ReachTest, testing::ValuesIn(samples()), [](auto const& information) {
    return information.param.screen + std::to_string(information.param.plans);
});

} // namespace
} // namespace trelundo::paywall::test
