#include "tests/platform/coreanimation/LayerFixture.h"

#include "trelundo/platform/coreanimation/CADisplayLink.h"
#include "trelundo/platform/coreanimation/internal/LayerAnimation.h"

#include <gmock/gmock.h>

#include <cmath>

using testing::ElementsAre;
using testing::IsEmpty;

namespace trelundo {

namespace {

CATransaction::Settings linear(double duration, double delay = 0) {
    return {
        .duration = duration, .delay = delay, .timing = CAMediaTimingFunction::linear(), .completion = {}};
}

class AnimationTest : public LayerTest {
protected:
    Ref<CALayer> layer = add({0, 0, 10, 10});
};

} // namespace

TEST_F(AnimationTest, TimingCurvesPassTheirKnownPoints) {
    auto const ease = CAMediaTimingFunction::easeInEaseOut();
    EXPECT_NEAR(ease.valueAt(0.25), 1 - ease.valueAt(0.75), 1e-9);
    EXPECT_LT(CAMediaTimingFunction::easeIn().valueAt(0.25), 0.25);
    EXPECT_GT(CAMediaTimingFunction::easeOut().valueAt(0.25), 0.25);
    EXPECT_DOUBLE_EQ(CAMediaTimingFunction::linear().valueAt(0.3), 0.3);
    EXPECT_DOUBLE_EQ(ease.valueAt(-1), 0);
    EXPECT_DOUBLE_EQ(ease.valueAt(7), 1);
}

TEST_F(AnimationTest, EveryAnimatableValueMoves) {
    animate(linear(1), [&] {
        layer->setBounds({10, 20, 30, 40});
        layer->setPosition({15, 25});
        layer->setTransform(CGAffineTransform::scale(3, 3));
        layer->setOpacity(0);
        layer->setBackgroundColor(CGColor{1, 0, 0, 1});
        layer->setCornerRadius(8);
        layer->setBorderWidth(4);
        layer->setBorderColor({1, 1, 1, 1});
    });
    frameAt(0.5);
    auto const shown = layer->presentationValues();
    EXPECT_EQ(shown.bounds, CGRect(5, 10, 20, 25));
    EXPECT_EQ(shown.position, (CGPoint{10, 15}));
    EXPECT_EQ(shown.transform, CGAffineTransform::scale(2, 2));
    EXPECT_EQ(shown.opacity, 0.5);
    // From no colour at all the new one fades in.
    EXPECT_EQ(shown.backgroundColor, (CGColor{1, 0, 0, 0.5}));
    EXPECT_EQ(shown.cornerRadius, 4);
    EXPECT_EQ(shown.borderWidth, 2);
    EXPECT_EQ(shown.borderColor, (CGColor{0.5, 0.5, 0.5, 1}));
}

TEST_F(AnimationTest, AnimationsOfOnePropertyAddUpAndEndInTheirOwnTime) {
    auto const shownX = [&] { return layer->presentationValues().position.x; };
    animate("first", linear(1), [&] { layer->setPosition({105, 5}); });
    frameAt(0.5);
    animate("second", linear(1), [&] { layer->setPosition({5, 5}); });
    // Reversing half way: nothing jumps, and the first one's speed is still felt.
    EXPECT_NEAR(shownX(), 55, 1e-9);
    frameAt(0.75);
    EXPECT_NEAR(shownX(), 5 + 100 * 0.75 - 100 * 0.25, 1e-9);
    frameAt(1);
    EXPECT_THAT(ended, ElementsAre("first"));
    EXPECT_NEAR(shownX(), 55, 1e-9);
    frameAt(1.5);
    EXPECT_THAT(ended, ElementsAre("first", "second"));
    EXPECT_EQ(shownX(), 5);
}

TEST_F(AnimationTest, RepeatingAndReversing) {
    auto once = linear(0.5);
    once.autoreverses = true;
    auto forever = once;
    forever.repeats = true;
    animate("pulse", forever, [&] { layer->setOpacity(0); });
    animate("bounce", once, [&] { layer->setCornerRadius(8); });
    frameAt(0.75);
    EXPECT_NEAR(layer->presentationValues().opacity, 0.5, 1e-6);
    EXPECT_NEAR(layer->presentationValues().cornerRadius, 4, 1e-6);
    frameAt(1);
    EXPECT_THAT(ended, ElementsAre("bounce"));
    frameAt(10.25);
    EXPECT_NEAR(layer->presentationValues().opacity, 0.5, 1e-6);
    layer->removeAllAnimations();
    frame();
    EXPECT_THAT(ended, ElementsAre("bounce", "pulse cut"));
    EXPECT_FALSE(CATransaction::hasWork());
}

TEST_F(AnimationTest, NestedTransactionsInheritDurationAndCurve) {
    animate(linear(1), [&] { animate({.duration = 7, .completion = {}}, [&] { layer->setOpacity(0); }); });
    frameAt(0.25);
    EXPECT_NEAR(layer->presentationValues().opacity, 0.75, 1e-9);
    EXPECT_FALSE(CATransaction::isAnimating());
}

TEST_F(AnimationTest, ATurnKeepsItsSizeOnTheWay) {
    auto const quarter = std::acos(0.0);
    auto const half = interpolate({}, CGAffineTransform::rotation(quarter), 0.5);
    EXPECT_NEAR(std::hypot(half.a, half.b), 1, 1e-12);
    EXPECT_NEAR(std::atan2(half.b, half.a), quarter / 2, 1e-12);
    auto const skewed = CGAffineTransform{2, 0.3, -0.7, 1.5, 4, 5};
    auto const end = interpolate({}, skewed, 1);
    EXPECT_NEAR(end.c, skewed.c, 1e-12);
    EXPECT_NEAR(end.d, skewed.d, 1e-12);
    auto const mirrored = interpolate({}, CGAffineTransform::scale(1, -1), 0.25);
    EXPECT_NEAR(mirrored.d, 0.5, 1e-12);
}

TEST_F(AnimationTest, WithoutAnythingToAnimateTheCompletionComesNextTurnOnce) {
    animate("equal value", linear(1), [&] { layer->setOpacity(1); });
    animate("no duration", linear(0), [&] { layer->setOpacity(0.5); });
    auto const stray = make<CALayer>();
    animate("not shown", linear(1), [&] { stray->setOpacity(0); });
    CATransaction::setAnimationsEnabled(false);
    animate("switched off", linear(1), [&] { layer->setOpacity(0); });
    CATransaction::setAnimationsEnabled(true);
    EXPECT_THAT(ended, IsEmpty());
    EXPECT_EQ(layer->presentationValues().opacity, 0);
    DispatchQueue::main().runReady();
    EXPECT_THAT(ended, ElementsAre("equal value", "no duration", "not shown", "switched off"));
    animate("before the turn", linear(1), [] {});
    CATransaction::advanceFrame();
    EXPECT_EQ(ended.back(), "before the turn");
    DispatchQueue::main().runReady();
    frame();
    frame();
    EXPECT_EQ(ended.size(), 5u);
    EXPECT_FALSE(CATransaction::hasWork());
}

TEST_F(AnimationTest, CompletionsComeInTheOrderOfEndingThenOfCreation) {
    auto const other = add({0, 0, 1, 1});
    auto const shown = [&] { return other->presentationValues().opacity; };
    animate("long", linear(0.3), [&] { layer->setOpacity(0); });
    animate("late", linear(0.05, 0.1), [&] { other->setOpacity(0); });
    animate("same frame", linear(0.299), [&] { other->setCornerRadius(3); });
    EXPECT_EQ(other->opacity(), 0) << "the assigned value jumps";
    frameAt(0.1);
    EXPECT_DOUBLE_EQ(shown(), 1) << "the shown one follows after the delay";
    frameAt(8 / 60.0);
    EXPECT_NEAR(shown(), 1.0 / 3, 1e-9);
    EXPECT_THAT(ended, IsEmpty());
    frameAt(0.15);
    EXPECT_THAT(ended, ElementsAre("late"));
    frameAt(1);
    EXPECT_THAT(ended, ElementsAre("late", "long", "same frame"));
    EXPECT_FALSE(layer->isAnimating());
}

TEST_F(AnimationTest, AChainOfVeryShortAnimationsAdvancesOneStepAFrame) {
    for (bool const hasAnything : {true, false}) {
        SCOPED_TRACE(hasAnything ? "moves a layer" : "nothing to animate");
        layer->setPosition({});
        int steps = 0;
        std::function<void()> step = [&] {
            auto const next = [&](bool finished) {
                EXPECT_TRUE(finished);
                ++steps;
                step();
            };
            animate({.duration = 0.001, .completion = next}, [&] {
                layer->setPosition({layer->position().x + (hasAnything ? 1 : 0), 0});
            });
        };
        step();
        for (int turn = 0; turn < 100; ++turn) DispatchQueue::main().runReady();
        EXPECT_LE(steps, hasAnything ? 0 : 2) << "turns alone cannot run away";
        auto const before = steps;
        for (int i = 1; i <= 50; ++i) {
            frame();
            EXPECT_EQ(steps, before + i);
        }
        EXPECT_EQ(layer->position().x, hasAnything ? 51 : 0);
        EXPECT_TRUE(CATransaction::hasWork());
        test::MainThreadScope::clear();
    }
}

TEST_F(AnimationTest, LeavingTheShownTreeCutsAnimationsOfTheWholeSubtree) {
    auto const child = make<CALayer>();
    layer->addSublayer(child);
    auto const other = add({0, 0, 1, 1});
    animate("removed", linear(5), [&] { child->setOpacity(0); });
    animate("moved", linear(5), [&] { layer->setOpacity(0); });
    animate("both", linear(0.5), [&] {
        layer->setCornerRadius(4);
        other->setOpacity(0);
    });
    other->removeFromSuperlayer();
    child->removeFromSuperlayer();
    EXPECT_THAT(ended, IsEmpty()); // never inside the call
    root->insertSublayer(layer, 0);
    EXPECT_TRUE(layer->isAnimating());
    frame();
    EXPECT_THAT(ended, ElementsAre("removed cut"));
    animate("destroyed", linear(5), [&] { add({0, 0, 1, 1})->setOpacity(0); });
    root->sublayers().back()->removeFromSuperlayer();
    frame();
    EXPECT_THAT(ended, ElementsAre("removed cut", "destroyed cut"));
    frameAt(0.4);
    EXPECT_EQ(ended.size(), 2u) << "a transaction waits for the longest of its animations";
    frameAt(0.5);
    EXPECT_EQ(ended.back(), "both cut");
}

TEST(DisplayLinkTest, CallbacksMayRemoveThemselvesAndEachOther) {
    std::vector<std::string> calls;
    int first = 0, second = 0;
    first = CADisplayLink::add([&](double time) {
        calls.push_back("first " + std::to_string(static_cast<int>(time)));
        CADisplayLink::remove(first);
        CADisplayLink::remove(second);
    });
    second = CADisplayLink::add([&](double) { calls.push_back("second"); });
    CADisplayLink::fire(7);
    CADisplayLink::fire(8);
    EXPECT_THAT(calls, ElementsAre("first 7"));
    EXPECT_FALSE(CADisplayLink::hasAny());
}

} // namespace trelundo
