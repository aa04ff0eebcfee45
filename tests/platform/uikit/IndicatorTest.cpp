#include "tests/platform/uikit/DeviceFixture.h"
#include "trelundo/platform/coreanimation/CADisplayLink.h"
#include "trelundo/platform/uikit/controls/UIActivityIndicatorView.h"

namespace trelundo {

using IndicatorTest = DeviceFixture;

TEST_F(IndicatorTest, HiddenFollowsStartAndStopAndTheSizeFollowsTheStyle) {
    auto const large = make<UIActivityIndicatorView>(UIActivityIndicatorViewStyle::whiteLarge);
    EXPECT_EQ(large->intrinsicContentSize(), (CGSize{37, 37}));
    EXPECT_EQ(large->color(), UIColor::white());
    auto const indicator = make<UIActivityIndicatorView>();
    EXPECT_EQ(indicator->frame(), CGRect(0, 0, 20, 20));
    EXPECT_EQ(indicator->contentHuggingPriority(NSLayoutConstraintAxis::horizontal),
              UILayoutPriority::defaultHigh);
    EXPECT_TRUE(indicator->isHidden());
    indicator->startAnimating();
    indicator->startAnimating();
    EXPECT_FALSE(indicator->isHidden());
    indicator->stopAnimating();
    EXPECT_TRUE(indicator->isHidden());
    indicator->setHidesWhenStopped(false);
    EXPECT_FALSE(indicator->isHidden());
}

TEST_F(IndicatorTest, FramesRunOnlyWhileItTurnsInAWindow) {
    auto indicator = make<UIActivityIndicatorView>();
    indicator->startAnimating();
    EXPECT_FALSE(CADisplayLink::hasAny());
    for (int round = 0; round < 2; ++round) {
        show(indicator, {10, 10, 20, 20});
        EXPECT_TRUE(CADisplayLink::hasAny());
        indicator->removeFromSuperview();
        EXPECT_FALSE(CADisplayLink::hasAny());
        EXPECT_TRUE(indicator->isAnimating());
    }
    show(indicator, {10, 10, 20, 20})->stopAnimating();
    EXPECT_FALSE(CADisplayLink::hasAny());
}

TEST_F(IndicatorTest, OneTurnASecondInEightSteps) {
    auto const indicator = show(make<UIActivityIndicatorView>(), {10, 10, 20, 20});
    shell.window().setBackgroundColor(UIColor::white());
    indicator->setColor(UIColor::black());
    indicator->startAnimating();
    // The opaque blade stands at the top, then an eighth further: more of the white behind shows there.
    auto const top = [this] { return pixelAt({20, 13}) & 0xFF; };
    auto const first = top();
    shell.advance(0.15);
    EXPECT_GT(top(), first);
    auto const version = indicator->layer().contentVersion();
    shell.advance(0.05);
    EXPECT_EQ(indicator->layer().contentVersion(), version);
    shell.advance(0.8);
    EXPECT_EQ(top(), first);
}

} // namespace trelundo
