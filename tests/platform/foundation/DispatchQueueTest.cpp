#include "trelundo/platform/foundation/DispatchQueue.h"

#include "tests/support/MainQueue.h"
#include "tests/support/ScopedState.h"
#include "trelundo/platform/foundation/RunLoop.h"

#include <array>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <stdexcept>
#include <thread>

namespace trelundo {
namespace {

using namespace test;
using testing::ElementsAre;

class DispatchQueueTest : public testing::Test {
protected:
    ~DispatchQueueTest() override { clearMainQueue(); }

    DispatchQueue::Block note(int number) {
        return [this, number] { order.push_back(number); };
    }

    DispatchQueue& queue = DispatchQueue::main();
    ScopedVirtualClock time;
    std::vector<int> order;
};

TEST_F(DispatchQueueTest, RunsLaterAndInOrder) {
    queue.async(note(1));
    queue.async([this] {
        queue.async(note(3));
        EXPECT_FALSE(queue.runReady()) << "a block runs to its end before the next one starts";
        order.push_back(2);
    });
    queue.async(nullptr);
    EXPECT_TRUE(queue.runReady());
    EXPECT_THAT(order, ElementsAre(1, 2));
    EXPECT_TRUE(queue.runReady());
    EXPECT_FALSE(queue.runReady());
    EXPECT_THAT(order, ElementsAre(1, 2, 3));
}

TEST_F(DispatchQueueTest, DelayedBlocksRunAtTheirDeadlinesInTheirOrder) {
    queue.asyncAfter(2, note(4));
    queue.asyncAfter(1, note(2));
    queue.asyncAfter(1, note(3));
    queue.asyncAfter(std::numeric_limits<double>::infinity(), note(9));
    queue.asyncAfter(-5, note(1));
    EXPECT_EQ(queue.nextDeadline(), 1);
    EXPECT_TRUE(queue.runReady());
    EXPECT_FALSE(queue.hasReady());
    time.clock.setNow(0.999);
    EXPECT_FALSE(queue.runReady());
    time.clock.setNow(1.5);
    queue.async(note(5));
    time.clock.setNow(2.5);
    EXPECT_TRUE(queue.runReady());
    EXPECT_THAT(order, ElementsAre(1, 2, 3, 5, 4)) << "by the moment at which each became ready";
    EXPECT_EQ(queue.nextDeadline(), std::numeric_limits<double>::infinity());
}

TEST_F(DispatchQueueTest, AnotherClockDoesNotHoldBackWhatIsReady) {
    time.clock.setNow(1000);
    queue.async(note(1));
    VirtualClock early;
    Clock::setCurrent(&early);
    queue.async(note(2));
    queue.runReady();
    Clock::setCurrent(&time.clock);
    EXPECT_THAT(order, ElementsAre(1, 2));
}

TEST_F(DispatchQueueTest, WakesWhoeverListensWheneverWorkArrives) {
    int wakes = 0;
    int others = 0;
    auto const other = queue.addWakeUp([&] { ++others; });
    auto const id = queue.addWakeUp([&] {
        ++wakes;
        EXPECT_TRUE(queue.hasReady() || queue.nextDeadline() == 3)
            << "called without a lock, after the submission";
    });
    queue.asyncAfter(3, note(1));
    queue.removeWakeUp(other);
    queue.async(note(2));
    queue.removeWakeUp(id);
    queue.async(note(3));
    EXPECT_EQ(wakes, 2);
    EXPECT_EQ(others, 1);
}

TEST_F(DispatchQueueTest, TakesBlocksFromEveryThread) {
    std::array<std::thread, 4> threads;
    std::array<std::vector<int>, 4> seen;
    for (std::size_t i = 0; i < threads.size(); ++i)
        threads[i] = std::thread{[&, i] {
            for (int number = 0; number < 500; ++number)
                queue.async([&, i, number] { seen[i].push_back(number); });
        }};
    while (seen[0].size() + seen[1].size() + seen[2].size() + seen[3].size() < 2000) queue.runReady();
    for (auto& thread : threads) thread.join();
    for (auto const& numbers : seen) EXPECT_TRUE(std::ranges::is_sorted(numbers));
}

TEST_F(DispatchQueueTest, ABlockThatThrowsLeavesTheRestForLater) {
    queue.async([] { throw std::runtime_error{"block"}; });
    queue.async(note(1));
    EXPECT_THROW(queue.runReady(), std::runtime_error);
    EXPECT_TRUE(queue.runReady());
    EXPECT_THAT(order, ElementsAre(1));
}

TEST_F(DispatchQueueTest, TheRunLoopPreparesTheFrameAfterTheBlocks) {
    auto& loop = RunLoop::main();
    int const commit = loop.addBeforeSleepObserver(200, note(200));
    int late = 0;
    int const layout = loop.addBeforeSleepObserver(100, [&] {
        order.push_back(100);
        loop.removeBeforeSleepObserver(commit);
        if (late == 0) late = loop.addBeforeSleepObserver(50, note(50));
    });
    queue.async(note(1));
    loop.runTurn();
    EXPECT_THAT(order, ElementsAre(1, 100));
    order.clear();
    loop.runTurn();
    EXPECT_THAT(order, ElementsAre(50, 100));
    loop.removeBeforeSleepObserver(layout);
    loop.removeBeforeSleepObserver(late);
}

TEST_F(DispatchQueueTest, RunsUntilIdleWithinALimit) {
    int turns = 0;
    std::function<void()> const again = [&] {
        if (++turns < 15) queue.async(again);
    };
    queue.async(again);
    RunLoop::main().runUntilIdle(10);
    EXPECT_EQ(turns, 10);
    RunLoop::main().runUntilIdle();
    EXPECT_EQ(turns, 15);
}

TEST(ClockTest, SystemTimeDoesNotGoBack) {
    auto const before = Clock::current().now();
    EXPECT_GE(Clock::current().now(), before);
    EXPECT_GT(Clock::current().date(), 700'000'000) << "seconds since 2001, read after 2023";
}

} // namespace
} // namespace trelundo
