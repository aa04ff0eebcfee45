#include "tests/support/ScopedState.h"
#include "tools/paywall/gallery/SampleSelection.h"
#include "tools/paywall/screens/Screens.h"
#include "tools/paywall/session/OffscreenSession.h"
#include "tools/paywall/store/StoreAccess.h"
#include "trelundo/kit/store/PremiumManager.h"
#include "trelundo/platform/uikit/controls/UIControl.h"
#include "trelundo/platform/uikit/text/UILabel.h"

#include <gtest/gtest.h>

namespace trelundo::paywall::test {
namespace {

/// Calls `act` with every view below `view` that is not hidden.
void visit(UIView const& view, std::function<void(UIView const&)> const& act) {
    for (auto const& child : view.subviews()) {
        if (child->isHidden()) continue;
        act(*child);
        visit(*child, act);
    }
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
bool isLink(UIView const& control) {
    return control.accessibilityIdentifier() == "unlockButton" || liesIn(&control, "linksStackView");
}

/// Whether a finger at `point` reaches the control, or finds over a link what hides it.
bool isReached(UIView const& control, UIView const* hit) {
    if (!hit) return false;
    return hit->isDescendantOf(control) || (isLink(control) && (isControl(hit) || liesIn(hit, "offerView")));
}

/// The controls of the screen that a finger on the middle of what is seen of them does not reach.
std::string unreachable(OffscreenSession& shown) {
    auto& window = shown.shell.window();
    std::string names;
    int controls = 0;
    visit(*shown.session.screen()->view(), [&](UIView const& view) {
        if (!dynamic_cast<UIControl const*>(&view)) return;
        ++controls;
        auto const seen = view.convertRectTo(view.bounds(), nullptr).intersection(window.bounds());
        if (!seen.isEmpty() && !isReached(view, window.hitTest({seen.midX(), seen.midY()}).get()))
            names += view.accessibilityIdentifier() + view.accessibilityLabel() + ", ";
    });
    EXPECT_GT(controls, 0);
    return names;
}

/// The offers' labels that tell a price and are not whole on the screen.
std::string lostPrices(OffscreenSession& shown) {
    auto const bottom = shown.shell.window().bounds().maxY();
    std::string names;
    visit(*shown.session.screen()->view(), [&](UIView const& view) {
        auto const* label = dynamic_cast<UILabel const*>(&view);
        auto const& name = view.accessibilityIdentifier();
        if (!label || (name != "offerLabel" && !name.starts_with("info"))) return;
        auto const area = label->convertRectTo(label->bounds(), nullptr);
        bool const isWhole = !label->fit().truncated && area.minY() >= 0 && area.maxY() <= bottom &&
                             area.height() >= label->intrinsicContentSize().height * 0.5;
        if (!isWhole) names += name + ", ";
    });
    return names;
}

struct Sample {
    std::string screen;
    std::size_t plans;
};

class ReachTest : public testing::TestWithParam<Sample> {
protected:
    /// Shows the screen on `device` and looks at it upright and turned.
    void look(DeviceProfile const& device) {
        PremiumManager::sharedInstance().setState(PremiumManagerState::notStarted);
        Options options;
        options.screen = GetParam().screen;
        options.products = {{"app.premium.yearly", "app.premium.monthly", "app.premium.weekly"}};
        options.products->resize(GetParam().plans);
        options.device = &device;
        selectSampleProduct(options, catalogue);
        OffscreenSession shown{options, log, catalogue};
        shown.shell.advance(0.1);
        EXPECT_EQ(unreachable(shown), "") << device.name;
        shown.shell.rotate(true);
        shown.shell.advance(0.1);
        EXPECT_EQ(unreachable(shown), "") << device.name << " in landscape";
        if (options.screen.starts_with("OfferV")) {
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
        for (std::size_t const count : {2, 3}) all.push_back({screen.name, count});
    return all;
}

INSTANTIATE_TEST_SUITE_P(Screens, ReachTest, testing::ValuesIn(samples()), [](auto const& information) {
    return information.param.screen + std::to_string(information.param.plans);
});

} // namespace
} // namespace trelundo::paywall::test
