#include "LayerFixture.h"

#include "platform/coreanimation/CADisplayLink.h"
#include "platform/coreanimation/LayerAnimation.h"

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
    EXPECT_DOUBLE_EQ(ease.valueAt(0), 0);
    EXPECT_DOUBLE_EQ(ease.valueAt(1), 1);
    EXPECT_NEAR(ease.valueAt(0.5), 0.5, 1e-9);
    EXPECT_NEAR(ease.valueAt(0.25), 1 - ease.valueAt(0.75), 1e-9);
    EXPECT_LT(CAMediaTimingFunction::easeIn().valueAt(0.25), 0.25);
    EXPECT_GT(CAMediaTimingFunction::easeOut().valueAt(0.25), 0.25);
    EXPECT_DOUBLE_EQ(CAMediaTimingFunction::linear().valueAt(0.3), 0.3);
    EXPECT_DOUBLE_EQ(ease.valueAt(-1), 0);
    EXPECT_DOUBLE_EQ(ease.valueAt(7), 1);
}

TEST_F(AnimationTest, TheAssignedValueJumpsAndTheShownOneFollows) {
    layer->setOpacity(0.2);
    animate(linear(1), [&] { layer->setOpacity(1); });
    EXPECT_EQ(layer->opacity(), 1);
    EXPECT_DOUBLE_EQ(layer->presentationValues().opacity, 0.2);
    frameAt(0.5);
    EXPECT_NEAR(layer->presentationValues().opacity, 0.6, 1e-9);
    frameAt(1);
    EXPECT_DOUBLE_EQ(layer->presentationValues().opacity, 1);
    EXPECT_FALSE(layer->isAnimating());
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
    animate(
        linear(1),
        [&] {
            layer->setPosition({105, 5});
        },
        "first");
    frameAt(0.5);
    animate(
        linear(1),
        [&] {
            layer->setPosition({5, 5});
        },
        "second");
    // Reversing half way: nothing jumps, and the first one's speed is still felt.
    EXPECT_NEAR(layer->presentationValues().position.x, 55, 1e-9);
    frameAt(0.75);
    EXPECT_NEAR(layer->presentationValues().position.x, 5 + 100 * 0.75 - 100 * 0.25, 1e-9);
    frameAt(1);
    EXPECT_THAT(ended, ElementsAre("first"));
    EXPECT_NEAR(layer->presentationValues().position.x, 55, 1e-9);
    frameAt(1.5);
    EXPECT_THAT(ended, ElementsAre("first", "second"));
    EXPECT_EQ(layer->presentationValues().position.x, 5);
}

TEST_F(AnimationTest, DelayHoldsTheOldValue) {
    animate(
        linear(0.5, 0.5), [&] { layer->setOpacity(0); }, "late");
    frameAt(0.5);
    EXPECT_DOUBLE_EQ(layer->presentationValues().opacity, 1);
    frameAt(0.75);
    EXPECT_NEAR(layer->presentationValues().opacity, 0.5, 1e-9);
    EXPECT_THAT(ended, IsEmpty());
    frameAt(1);
    EXPECT_THAT(ended, ElementsAre("late"));
}

TEST_F(AnimationTest, RepeatingAndReversing) {
    auto settings = linear(0.5);
    settings.repeats = settings.autoreverses = true;
    animate(
        settings, [&] { layer->setOpacity(0); }, "pulse");
    auto once = linear(0.5);
    once.autoreverses = true;
    animate(
        once, [&] { layer->setCornerRadius(8); }, "bounce");
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
    CATransaction::begin(linear(1));
    CATransaction::begin({.duration = 7, .completion = {}});
    layer->setOpacity(0);
    CATransaction::commit();
    CATransaction::commit();
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

// Completions.

TEST_F(AnimationTest, WithoutAnythingToAnimateTheCompletionComesNextTurnOnce) {
    animate(
        linear(1), [&] { layer->setOpacity(1); }, "equal value");
    animate(
        linear(0), [&] { layer->setOpacity(0.5); }, "no duration");
    auto const stray = make<CALayer>();
    animate(
        linear(1), [&] { stray->setOpacity(0); }, "not shown");
    CATransaction::setAnimationsEnabled(false);
    animate(
        linear(1), [&] { layer->setOpacity(0); }, "switched off");
    CATransaction::setAnimationsEnabled(true);
    EXPECT_THAT(ended, IsEmpty());
    EXPECT_EQ(layer->presentationValues().opacity, 0);
    DispatchQueue::main().runReady();
    EXPECT_THAT(ended, ElementsAre("equal value", "no duration", "not shown", "switched off"));
    frame();
    frame();
    EXPECT_EQ(ended.size(), 4u);
    EXPECT_FALSE(CATransaction::hasWork());
}

TEST_F(AnimationTest, AFrameBeforeTheTurnDeliversTheSameCompletionsOnce) {
    animate(
        linear(1), [] {}, "nothing");
    CATransaction::advanceFrame();
    EXPECT_THAT(ended, ElementsAre("nothing"));
    DispatchQueue::main().runReady();
    frame();
    EXPECT_THAT(ended, ElementsAre("nothing"));
}

TEST_F(AnimationTest, AChainOfVeryShortAnimationsAdvancesOneStepAFrame) {
    int steps = 0;
    std::function<void()> step = [&] {
        CATransaction::begin({.duration = 0.001, .completion = [&](bool finished) {
                                  EXPECT_TRUE(finished);
                                  ++steps;
                                  step();
                              }});
        layer->setPosition({layer->position().x + 1, 0});
        CATransaction::commit();
    };
    step();
    for (int i = 1; i <= 50; ++i) {
        frame();
        EXPECT_EQ(steps, i);
    }
    EXPECT_EQ(layer->position().x, 5 + 51);
}

TEST_F(AnimationTest, AChainWithNothingToAnimateCannotRunAway) {
    int steps = 0;
    std::function<void()> step = [&] {
        CATransaction::begin({.duration = 0.001, .completion = [&](bool) {
                                  ++steps;
                                  step();
                              }});
        CATransaction::commit();
    };
    step();
    for (int turn = 0; turn < 100; ++turn) DispatchQueue::main().runReady();
    EXPECT_LE(steps, 2);
    auto const before = steps;
    for (int i = 0; i < 10; ++i) frame();
    EXPECT_EQ(steps, before + 10);
    EXPECT_TRUE(CATransaction::hasWork());
}

TEST_F(AnimationTest, CompletionsComeInTheOrderOfEndingThenOfCreation) {
    auto const other = add({0, 0, 1, 1});
    animate(
        linear(0.3), [&] { layer->setOpacity(0); }, "long");
    animate(
        linear(0.1), [&] { other->setOpacity(0); }, "short");
    animate(
        linear(0.299), [&] { other->setCornerRadius(3); }, "same frame");
    frameAt(0.1);
    EXPECT_THAT(ended, ElementsAre("short"));
    frameAt(1);
    EXPECT_THAT(ended, ElementsAre("short", "long", "same frame"));
}

TEST_F(AnimationTest, ATransactionWaitsForItsLongestAnimation) {
    auto const other = add({0, 0, 1, 1});
    CATransaction::begin({.duration = 0.5, .completion = [this](bool) { ended.push_back("all"); }});
    layer->setOpacity(0);
    other->setPosition({4, 4});
    CATransaction::commit();
    other->removeFromSuperlayer();
    frameAt(0.4);
    EXPECT_THAT(ended, IsEmpty());
    frameAt(0.5);
    EXPECT_THAT(ended, ElementsAre("all"));
}

TEST_F(AnimationTest, LeavingTheShownTreeCutsAnimationsOfTheWholeSubtree) {
    auto const child = make<CALayer>();
    layer->addSublayer(child);
    animate(
        linear(5), [&] { child->setOpacity(0); }, "removed");
    animate(
        linear(5), [&] { layer->setOpacity(0); }, "moved");
    child->removeFromSuperlayer();
    EXPECT_THAT(ended, IsEmpty()); // never inside the call
    root->insertSublayer(layer, 0);
    EXPECT_TRUE(layer->isAnimating());
    frame();
    EXPECT_THAT(ended, ElementsAre("removed cut"));
    animate(
        linear(5),
        [&] {
            add({0, 0, 1, 1})->setOpacity(0);
        },
        "destroyed");
    root->sublayers().back()->removeFromSuperlayer();
    frame();
    EXPECT_THAT(ended, ElementsAre("removed cut", "destroyed cut"));
}

TEST(DisplayLink, CallbacksMayRemoveThemselvesAndEachOther) {
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
