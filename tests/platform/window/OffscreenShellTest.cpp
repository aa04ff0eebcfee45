#include "trelundo/platform/window/OffscreenShell.h"

#include "trelundo/platform/coreanimation/CADisplayLink.h"
#include "trelundo/platform/foundation/DispatchQueue.h"
#include "trelundo/platform/uikit/collection/UIScrollView.h"

#include <gmock/gmock.h>

using testing::ElementsAre;

namespace trelundo {
namespace {

class OffscreenShellTest : public testing::Test {
protected:
    OffscreenShell shell{{.device = DeviceProfile::find("phone-375x667"), .startDate = 1000}};
};

TEST_F(OffscreenShellTest, TimeMovesInWholeFramesAndKeepsWhatIsLeftOver) {
    std::vector<double> frames;
    auto const link = CADisplayLink::add([&](double time) { frames.push_back(time * 60); });
    shell.advance(0.05); // three frames
    EXPECT_THAT(frames, ElementsAre(1, 2, 3));
    shell.advance(0.01);
    EXPECT_EQ(frames.size(), 3u);
    shell.advance(0.01);
    EXPECT_EQ(frames.size(), 4u);
    for (int i = 0; i < 100; ++i) shell.advance(0.1);
    EXPECT_NEAR(static_cast<double>(frames.size()), (0.07 + 10) * 60, 1);
    EXPECT_DOUBLE_EQ(Clock::current().now(), shell.now());
    EXPECT_DOUBLE_EQ(Clock::current().date(), 1000 + shell.now());
    CADisplayLink::remove(link);
}

TEST_F(OffscreenShellTest, AdvancingByNothingIsOneTurnAndDelayedBlocksComeAtTheirFrame) {
    std::vector<std::string> calls;
    DispatchQueue::main().async([&] {
        calls.emplace_back("first");
        DispatchQueue::main().async([&] { calls.emplace_back("second"); });
    });
    DispatchQueue::main().asyncAfter(0.1,
                                     [&] { calls.push_back("delayed by " + std::to_string(shell.now())); });
    shell.advance(0);
    EXPECT_THAT(calls, ElementsAre("first"));
    shell.advance(0);
    EXPECT_EQ(shell.now(), 0);
    shell.advance(0.09);
    EXPECT_THAT(calls, ElementsAre("first", "second"));
    shell.advance(1);
    EXPECT_THAT(calls, ElementsAre("first", "second", "delayed by 0.100000"));
}

TEST_F(OffscreenShellTest, DraggingTakesVirtualTimeAndScrolls) {
    auto const strip = make<UIScrollView>(CGRect{0, 0, 300, 100});
    strip->setContentSize({2000, 100});
    shell.window().addSubview(strip);
    shell.drag({200, 50}, -120, 0, 0.5);
    EXPECT_NEAR(shell.now(), 0.5, 1e-9);
    EXPECT_GT(strip->contentOffset().x, 90);
    auto const released = strip->contentOffset().x;
    shell.advance(3);
    EXPECT_GT(strip->contentOffset().x, released) << "it runs on with inertia";
    EXPECT_FALSE(strip->isDecelerating());
}

TEST(OffscreenShellsTest, OneAfterAnotherStartAtZero) {
    auto const* device = DeviceProfile::find("phone-320x568");
    int calls = 0;
    {
        OffscreenShell first({.device = device});
        first.advance(1);
        DispatchQueue::main().async([&] { ++calls; });
        DispatchQueue::main().asyncAfter(1.5, [&] { ++calls; });
    }
    OffscreenShell second({.device = device});
    EXPECT_EQ(Clock::current().now(), 0);
    second.advance(1);
    EXPECT_EQ(calls, 1) << "what was pending is not lost";
    second.advance(1);
    EXPECT_EQ(calls, 2) << "and what was delayed keeps the time that was left";
}

} // namespace
} // namespace trelundo
