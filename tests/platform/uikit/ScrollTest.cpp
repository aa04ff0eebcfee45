#include "tests/platform/uikit/ScrollStage.h"

#include "trelundo/platform/uikit/collection/UIScrollView.h"
#include "trelundo/platform/window/OffscreenShell.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace trelundo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Writes down what it is told, equal neighbours once.
class ScrollSpy : public NSObject, public UIScrollViewDelegate {
public:
    void scrollViewDidScroll(UIScrollView&) override { note("scroll"); }
    void scrollViewWillBeginDragging(UIScrollView&) override { note("willBeginDragging"); }
    void scrollViewWillEndDragging(UIScrollView&, CGPoint speed, CGPoint& target) override {
        note("willEndDragging");
        velocity = speed;
        proposed = target;
        if (chosen) target = *chosen;
    }
    void scrollViewDidEndDragging(UIScrollView&, bool decelerates) override {
        note(decelerates ? "didEndDragging, runs on" : "didEndDragging");
    }
    void scrollViewWillBeginDecelerating(UIScrollView&) override { note("willBeginDecelerating"); }
    void scrollViewDidEndDecelerating(UIScrollView&) override { note("didEndDecelerating"); }
    void scrollViewDidEndScrollingAnimation(UIScrollView&) override { note("didEndAnimation"); }

    std::vector<std::string> calls;
    CGPoint velocity;
    CGPoint proposed;
    std::optional<CGPoint> chosen;

private:
    void note(std::string call) {
        if (calls.empty() || calls.back() != call) calls.push_back(std::move(call));
    }
};

/// Notes whether its touch ended or was taken away.
class TouchedView : public UIView {
public:
    using UIView::UIView;
    void touchesEnded(UITouch&) override { ++ended; }
    void touchesCancelled(UITouch&) override { ++cancelled; }
    int ended = 0, cancelled = 0;
};

class ScrollTest : public testing::Test {
protected:
    ScrollTest() {
        scroll->setContentSize({4000, 600});
        scroll->setScrollDelegate(spy);
        scroll->addSubview(content);
        stage.window().addSubview(scroll);
        stage.window().layoutWindow();
    }
    double x() const { return scroll->contentOffset().x; }
    void runToRest() {
        for (int i = 0; i < 1000 && scroll->isDecelerating(); ++i) stage.frame();
        ASSERT_FALSE(scroll->isDecelerating());
    }
    /// A flick to the left at `speed` points a second.
    void flick(double speed) {
        stage.press({300, 300});
        for (int i = 0; i < 6; ++i) stage.move(-speed * ScrollStage::frameDuration);
        stage.release();
    }

    ScrollStage stage;
    Ref<UIScrollView> scroll = make<UIScrollView>(CGRect{0, 0, 400, 600});
    Ref<TouchedView> content = make<TouchedView>(CGRect{0, 0, 4000, 600});
    Ref<ScrollSpy> spy = make<ScrollSpy>();
};

TEST_F(ScrollTest, OffsetIsTheOriginOfBoundsExactAndUnclamped) {
    scroll->setContentOffset({0, 0});
    EXPECT_THAT(spy->calls, IsEmpty()) << "nothing changed";
    scroll->setContentOffset({-123.456789, 9999});
    stage.frames(3);
    EXPECT_EQ(scroll->bounds().origin, (CGPoint{-123.456789, 9999}));
    EXPECT_THAT(spy->calls, ElementsAre("scroll"));
}

TEST_F(ScrollTest, AnimatedOffsetArrivesWithinThreeTenthsUnlessAnotherIsAssigned) {
    scroll->setContentOffset({500, 0}, true);
    EXPECT_EQ(x(), 0);
    stage.frames(9);
    EXPECT_NEAR(x(), 250, 30);
    stage.frames(10);
    EXPECT_EQ(x(), 500);
    EXPECT_THAT(spy->calls, ElementsAre("scroll", "didEndAnimation"));
    scroll->setContentOffset({0, 0}, true);
    stage.frames(5);
    scroll->setContentOffset({40, 0});
    stage.frames(30);
    EXPECT_EQ(x(), 40);
}

TEST_F(ScrollTest, DragBeginsAfterTenPointsAndTakesTheTouchOver) {
    stage.press({300, 300});
    EXPECT_TRUE(scroll->isTracking());
    stage.move(-9);
    EXPECT_FALSE(scroll->isDragging());
    EXPECT_EQ(x(), 0);
    EXPECT_EQ(content->cancelled, 0);
    stage.move(-6);
    EXPECT_TRUE(scroll->isDragging());
    EXPECT_EQ(x(), 5 * 1.25); // no jump, but the content begins to catch up
    EXPECT_EQ(content->cancelled, 1);
    stage.move(-45, 70);
    EXPECT_EQ(scroll->contentOffset(), (CGPoint{60, 0})); // level with the finger, and not downwards
    stage.move(20);
    EXPECT_EQ(x(), 40);
    stage.restAndRelease();
    EXPECT_FALSE(scroll->isTracking());
    EXPECT_EQ(content->ended, 0);
    EXPECT_THAT(spy->calls, ElementsAre("willBeginDragging", "scroll", "willEndDragging", "didEndDragging"))
        << "a resting finger leaves no speed";
    EXPECT_EQ(x(), 40);
}

TEST_F(ScrollTest, ContentThatFitsMovesOnlyWhenItAlwaysBounces) {
    scroll->setContentSize({100, 100});
    for (bool const bounces : {false, true}) {
        scroll->setAlwaysBounceHorizontal(bounces);
        stage.press({300, 300});
        stage.move(-60);
        EXPECT_EQ(x() > 0, bounces);
        stage.restAndRelease();
        runToRest();
        EXPECT_EQ(x(), 0);
    }
}

TEST_F(ScrollTest, DragsAcrossTheScrollingAxisOrOfADisabledViewAreLeftToTheContent) {
    stage.press({300, 300});
    stage.move(0, 80);
    stage.release();
    EXPECT_EQ(content->ended, 1);
    scroll->setScrollEnabled(false);
    flick(1000);
    EXPECT_EQ(content->ended, 2);
    EXPECT_FALSE(scroll->scrollBy({50, 0}));
    EXPECT_EQ(scroll->contentOffset(), CGPoint{});
    EXPECT_FALSE(scroll->isDecelerating());
    EXPECT_THAT(spy->calls, IsEmpty());
}

TEST_F(ScrollTest, DelegateIsToldInOrderAndMayChooseWhereTheMovementEnds) {
    flick(600);
    runToRest();
    EXPECT_THAT(spy->calls,
                ElementsAre("willBeginDragging", "scroll", "willEndDragging", "didEndDragging, runs on",
                            "willBeginDecelerating", "scroll", "didEndDecelerating"));
    EXPECT_NEAR(spy->velocity.x, 0.6, 1e-6);
    EXPECT_EQ(spy->velocity.y, 0);
    spy->chosen = CGPoint{1800, 0};
    flick(500);
    runToRest();
    EXPECT_NEAR(x(), 1800, 1e-6) << "where the delegate chose";
}

TEST_F(ScrollTest, InertiaTravelsTheDistanceOfItsRate) {
    for (double const rate : {0.998, 0.99}) {
        scroll->setDecelerationRate(rate);
        scroll->setContentOffset({0, 0});
        flick(1200);
        double const released = x();
        double const distance = 1200.0 / 1000 * rate / (1 - rate);
        EXPECT_NEAR(spy->proposed.x, released + distance, 1e-6);
        runToRest();
        EXPECT_NEAR(x(), released + distance, 1e-6);
    }
}

TEST_F(ScrollTest, TouchStopsTheMovementAndIsNoTap) {
    flick(1500);
    stage.frames(5);
    stage.press({200, 200});
    double const stopped = x();
    EXPECT_FALSE(scroll->isDecelerating());
    EXPECT_EQ(spy->calls.back(), "didEndDecelerating");
    stage.frames(5);
    EXPECT_EQ(x(), stopped);
    stage.release();
    EXPECT_EQ(content->ended, 0);
}

TEST_F(ScrollTest, RubberBandFollowsItsFormulaAndSpringsBack) {
    stage.press({50, 300});
    stage.move(100);
    stage.move(100);
    EXPECT_NEAR(x(), -(1 - 1 / (200 * 0.55 / 400 + 1)) * 400, 1e-9);
    stage.move(-50);
    EXPECT_NEAR(x(), -(1 - 1 / (150 * 0.55 / 400 + 1)) * 400, 1e-9);
    stage.restAndRelease();
    EXPECT_TRUE(scroll->isDecelerating());
    int frames = 0;
    for (double before = x(); scroll->isDecelerating(); before = x(), ++frames) {
        stage.frame();
        EXPECT_GE(x(), before) << "a critically damped spring does not swing";
        ASSERT_LT(frames, 60);
    }
    EXPECT_EQ(x(), 0);
    EXPECT_NEAR(frames * ScrollStage::frameDuration, 0.4, 0.1);
}

TEST_F(ScrollTest, FlickAgainstTheEdgeOvershootsAndReturnsUnlessTheEdgesAreHard) {
    auto const farthestOfFlick = [this] {
        scroll->setContentOffset({3500, 0});
        flick(3000);
        double farthest = 0;
        for (int i = 0; i < 300 && scroll->isDecelerating(); ++i, farthest = std::max(farthest, x()))
            stage.frame();
        EXPECT_EQ(x(), 3600);
        return farthest;
    };
    double const soft = farthestOfFlick();
    EXPECT_GT(soft, 3605);
    EXPECT_LT(soft, 3700);
    scroll->setBounces(false);
    EXPECT_EQ(farthestOfFlick(), 3600);
    scroll->setContentOffset({0, 0});
    stage.press({50, 300});
    stage.move(200);
    EXPECT_EQ(x(), 0);
    stage.restAndRelease();
}

TEST_F(ScrollTest, FingerDriftAndInertiaAddUpWithoutJumps) {
    // A chain of very short animations moves the offset one point a frame, as a drifting carousel does.
    std::function<void()> const drift = [this] {
        double const next = x() + 1;
        UIView::animate({.duration = 0.001, .animations = [this, next] {
                             scroll->setContentOffset({next, 0});
                         }});
    };
    scroll->setContentOffset({1000, 0});
    stage.press({200, 300});
    stage.move(-60);
    for (int i = 0; i < 20; ++i) {
        double const before = x();
        drift();
        stage.move(i < 10 ? -8 : 0);
        EXPECT_NEAR(x() - before, i < 10 ? 9 : 1, 1e-9);
    }
    stage.restAndRelease();
    drift();
    EXPECT_EQ(x(), 1000 + 60 + 80 + 21);

    flick(1000);
    double const released = x();
    for (int i = 0; i < 30; ++i) { // half a second
        drift();
        stage.frame();
    }
    EXPECT_NEAR(x() - released, 30 + 499 * (1 - std::pow(0.998, 500)), 1e-6)
        << "the speed of inertia decays each millisecond";
}

TEST_F(ScrollTest, WheelStaysWithinTheEdgesWhichInsetsAndSizesMove) {
    EXPECT_TRUE(scroll->scrollBy({120, 30}));
    EXPECT_EQ(scroll->contentOffset(), (CGPoint{120, 0}));
    EXPECT_TRUE(scroll->scrollBy({-500, 0}));
    EXPECT_FALSE(scroll->scrollBy({-1, 0}));
    EXPECT_EQ(x(), 0);
    scroll->setContentOffset({-50, 0});
    EXPECT_TRUE(scroll->scrollBy({20, 0}));
    EXPECT_FALSE(scroll->scrollBy({-20, 0}));
    EXPECT_EQ(x(), -30);
    scroll->setContentInset({0, 20, 0, 30});
    scroll->scrollBy({9000, 0});
    EXPECT_EQ(x(), 3630);
    scroll->scrollBy({-9000, 0});
    EXPECT_EQ(x(), -20);
    scroll->setContentInset({});
    scroll->scrollBy({90, 0});
    scroll->scrollBy({-9000, 0});
    EXPECT_EQ(x(), 0);
    EXPECT_FALSE(std::signbit(x())) << "descriptions would show -0";
    scroll->setContentOffset({3600, 0});
    scroll->setFrame({0, 0, 500, 600});
    stage.frame();
    EXPECT_EQ(x(), 3500);
}

TEST_F(ScrollTest, LeavingTheWindowEndsEverythingAndDyingLeavesNoCallbackBehind) {
    flick(2000);
    scroll->removeFromSuperview();
    double const last = x();
    EXPECT_FALSE(scroll->isDecelerating());
    stage.frames(5);
    EXPECT_EQ(x(), last);
    Weak<UIScrollView> const weak = scroll;
    scroll->setContentOffset({0, 0}, true);
    scroll = nullptr;
    EXPECT_FALSE(weak.lock());
    stage.frames(3);
}

TEST_F(ScrollTest, BarsAppearWithTheUsersMovementAndFade) {
    auto const bars = [this] {
        return std::ranges::count_if(scroll->layer().sublayers(), [](auto const& layer) {
            return layer->zPosition() > 0 && !layer->isHidden();
        });
    };
    scroll->setContentOffset({100, 0});
    EXPECT_EQ(bars(), 0);
    stage.press({300, 300});
    stage.move(-50);
    EXPECT_EQ(bars(), 1);
    scroll->setShowsHorizontalScrollIndicator(false);
    EXPECT_EQ(bars(), 0) << "at once";
    scroll->setShowsHorizontalScrollIndicator(true);
    stage.restAndRelease();
    EXPECT_EQ(bars(), 1);
    stage.frames(60);
    EXPECT_EQ(bars(), 0);
}

TEST(ScrollInsetsTest, SafeAreaCountsAlongTheAxesThatScroll) {
    OffscreenShell shell{{.device = DeviceProfile::find("phone-390x844"), .landscape = true}};
    auto const scroll = make<UIScrollView>(CGRect{0, 0, 844, 390});
    shell.window().addSubview(scroll);
    shell.window().layoutWindow();
    for (auto const& [content, insets] : {std::pair{CGSize{2000, 390}, UIEdgeInsets{0, 47, 0, 47}},
                                          {CGSize{844, 2000}, UIEdgeInsets{0, 0, 21, 0}},
                                          {CGSize{100, 100}, UIEdgeInsets{}}}) {
        scroll->setContentSize(content);
        EXPECT_EQ(scroll->adjustedContentInset(), insets);
    }
    scroll->setContentInsetAdjustmentBehavior(UIScrollViewContentInsetAdjustmentBehavior::always);
    EXPECT_EQ(scroll->adjustedContentInset(), (UIEdgeInsets{0, 47, 21, 47}));
    // A strip in the middle touches the safe area with its sides only.
    scroll->setFrame({0, 100, 844, 100});
    shell.window().layoutWindow();
    EXPECT_EQ(scroll->adjustedContentInset(), (UIEdgeInsets{0, 47, 0, 47}));
}

} // namespace
} // namespace trelundo
