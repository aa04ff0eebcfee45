#include "trelundo/platform/window/EmbeddedShell.h"

#include "trelundo/platform/foundation/Clock.h"
#include "trelundo/platform/foundation/DispatchQueue.h"
#include "trelundo/platform/uikit/controllers/UIApplication.h"
#include "trelundo/platform/uikit/controls/UIButton.h"
#include "trelundo/platform/uikit/text/UILabel.h"
#include "trelundo/platform/window/OffscreenShell.h"

#include <gmock/gmock.h>

#include <cmath>
#include <thread>

using testing::ElementsAre;
using testing::IsEmpty;

namespace trelundo {
namespace {

struct Presses : NSObject {
    void press() { ++count; }
    int count = 0;
};

class EmbeddedShellTest : public testing::Test {
protected:
    EmbeddedShellTest() { shell.frame(); }

    Ref<UIView> addView(CGRect frame) {
        auto view = make<UIView>(frame);
        view->setBackgroundColor(UIColor::red());
        shell.window().addSubview(view);
        return view;
    }

    VirtualClock clock;
    std::atomic<int> wakes = 0;
    EmbeddedShell shell{{.screen = {.size = {400, 800}, .scale = 2, .safeArea = {10, 0, 20, 0}},
                         .wakeUp = [this] { ++wakes; },
                         .clock = &clock}};
};

TEST_F(EmbeddedShellTest, TellsWhatChangedInPixelsAndSleepsWhenNothingMoves) {
    EXPECT_EQ(shell.pixels().pixelHeight(), 1600);
    EXPECT_EQ(shell.pixels().pixel(0, 0), 0xff000000u);
    addView({10, 20, 30, 40});
    auto const frame = shell.frame();
    EXPECT_THAT(frame.dirty, ElementsAre(CGRect{20, 40, 60, 80}));
    EXPECT_EQ(frame.next, std::numeric_limits<double>::infinity());
    EXPECT_EQ(shell.pixels().pixel(20, 40), 0xffff0000u);
    EXPECT_THAT(shell.frame().dirty, IsEmpty());
}

TEST_F(EmbeddedShellTest, AsksForSixtyFramesASecondWhileSomethingMovesAndForTheNextDeadline) {
    auto const view = addView({0, 0, 10, 10});
    shell.frame();
    UIView::animate({.duration = 0.1, .animations = [&] { view->setCenter({100, 100}); }});
    int frames = 0;
    for (auto next = shell.untilNextFrame(); std::isfinite(next); next = shell.frame().next) {
        clock.setNow(clock.now() + next);
        ++frames;
    }
    EXPECT_NEAR(frames, 6, 1);
    UIView::animate({.duration = 9, .animations = [&] { view->setCenter({0, 0}); }});
    shell.setVisible(false);
    EXPECT_EQ(shell.frame().next, std::numeric_limits<double>::infinity()) << "nobody sees it";
    DispatchQueue::main().asyncAfter(3, [] {});
    EXPECT_NEAR(shell.frame().next, 3, 1e-9);
}

TEST_F(EmbeddedShellTest, WakesItsHostOnceBetweenFramesFromAnyThreadAndNeverOnceItIsGone) {
    wakes = 0;
    std::thread([] {
        DispatchQueue::main().async([] {});
        DispatchQueue::main().async([] {});
    }).join();
    EXPECT_EQ(wakes, 1);
    shell.frame();
    shell.touchBegan(0, {1, 1});
    EXPECT_EQ(wakes, 2);
    DispatchQueue::main().async([] { DispatchQueue::main().async([] {}); });
    EXPECT_LT(shell.frame().next, 0.02) << "told by the frame, not by a call";
    EXPECT_EQ(wakes, 2);
    int others = 0;
    {
        EmbeddedShell const other({.screen = {.size = {400, 800}}, .wakeUp = [&] { ++others; }});
    }
    others = 0;
    DispatchQueue::main().async([] {});
    EXPECT_EQ(others, 0);
}

TEST_F(EmbeddedShellTest, TakesInputInHostPointsAtItsZoom) {
    auto const presses = make<Presses>();
    auto const button = make<UIButton>();
    button->setFrame({100, 100, 50, 50});
    button->addTarget(presses.get(), &Presses::press, UIControlEvents::touchUpInside);
    shell.window().addSubview(button);
    shell.setScreen({.size = {200, 400}, .zoom = 0.5});
    EXPECT_EQ(shell.window().bounds().size, (CGSize{400, 800}));
    shell.touchBegan(0, {60, 60});
    shell.touchEnded(0, {60, 60});
    EXPECT_EQ(presses->count, 1);
    auto const views = shell.accessibleViews();
    ASSERT_EQ(views.size(), 1u);
    EXPECT_EQ(views.front().frame, (CGRect{50, 50, 25, 25}));
    shell.press(views.front());
    EXPECT_EQ(presses->count, 2);
    button->removeFromSuperview();
    shell.press(views.front());
    EXPECT_EQ(presses->count, 2);
}

TEST_F(EmbeddedShellTest, ShowsTheViewsSmallerInAPlaceSmallerThanAnyDevice) {
    shell.setScreen({.size = {160, 160}, .safeArea = {4, 0, 0, 0}});
    EXPECT_NEAR(shell.window().bounds().size.width, 568, 1e-9);
    EXPECT_NEAR(shell.window().windowSafeAreaInsets().top, 4 / shell.zoom(), 1e-9);
    EXPECT_EQ(shell.pixels().pixelWidth(), 160);
    shell.setScreen({.size = {0, 0}});
    EXPECT_THAT(shell.frame().dirty, ElementsAre(CGRect{0, 0, 1, 1}));
}

TEST_F(EmbeddedShellTest, MeasuresTextsAnewForAnotherPixelScale) {
    auto const label = make<UILabel>();
    label->setText("Unlock all");
    label->setTranslatesAutoresizingMaskIntoConstraints(false);
    shell.window().addSubview(label);
    auto const sizeAt = [&](double scale) {
        shell.setScreen({.size = {400, 800}, .scale = scale});
        shell.frame();
        return label->bounds().size;
    };
    auto const coarse = sizeAt(1);
    EXPECT_EQ(coarse.width, std::round(coarse.width));
    auto const fine = sizeAt(4);
    EXPECT_LT(fine.width, coarse.width);
    EXPECT_EQ(fine.width * 4, std::round(fine.width * 4));
}

TEST_F(EmbeddedShellTest, IsItsDeviceAtItsSizeOnlyAndHasNoCutOutElse) {
    auto const* phone = DeviceProfile::find("phone-390x844");
    shell.setScreen({.size = {195, 422}, .zoom = 0.5, .device = phone});
    EXPECT_EQ(shell.window().windowSafeAreaInsets().top, 47);
    shell.setScreen({.size = {844, 390}, .device = phone});
    EXPECT_EQ(shell.zoom(), 1) << "turned it is still the device";
    EXPECT_EQ(shell.window().windowSafeAreaInsets().left, 47);
    shell.setScreen({.size = {500, 844}, .device = phone});
    EXPECT_EQ(shell.window().windowSafeAreaInsets(), UIEdgeInsets{});
    shell.setScreen({.size = {640, 480}, .device = phone});
    EXPECT_NEAR(shell.window().bounds().size.height, 568, 1e-9);
    EXPECT_EQ(shell.window().traitCollection().horizontalSizeClass, UIUserInterfaceSizeClass::compact);
}

TEST_F(EmbeddedShellTest, HasAScreenWindowsTimeAndMovementOfItsOwn) {
    OffscreenShell other({.device = DeviceProfile::find("tablet-820x1180")});
    EXPECT_EQ(UIScreen::main().bounds().size, (CGSize{820, 1180})) << "the newest is current";
    EXPECT_THAT(UIApplication::shared().windows(), ElementsAre(&other.window()));
    shell.makeCurrent();
    EXPECT_EQ(UIScreen::main().bounds().size, (CGSize{400, 800}));
    EXPECT_EQ(UIApplication::shared().keyWindow(), &shell.window());

    shell.setUserInterfaceStyle(UIUserInterfaceStyle::dark);
    EXPECT_EQ(other.window().traitCollection().userInterfaceStyle, UIUserInterfaceStyle::light);
    auto const view = addView({0, 0, 10, 10});
    UIView::animate({.duration = 1, .animations = [&] { view->setAlpha(0); }});
    other.advance(5);
    EXPECT_TRUE(view->layer().isAnimating());
    EXPECT_EQ(other.embedded().untilNextFrame(), std::numeric_limits<double>::infinity());
    clock.setNow(1.01);
    shell.frame();
    EXPECT_FALSE(view->layer().isAnimating());
}

TEST_F(EmbeddedShellTest, ABlockRunsInTheShellThatSubmittedItAndWaitsInItsTime) {
    OffscreenShell other({.device = DeviceProfile::find("phone-320x568")});
    std::vector<double> widths;
    auto const note = [&] { widths.push_back(UIScreen::main().bounds().width()); };
    DispatchQueue::main().async(note);
    DispatchQueue::main().asyncAfter(1, note);
    shell.makeCurrent();
    DispatchQueue::main().asyncAfter(2, note);
    clock.setNow(1.5);
    shell.frame();
    EXPECT_THAT(widths, ElementsAre(320)) << "a second of the other shell has not passed";
    other.advance(1);
    EXPECT_THAT(widths, ElementsAre(320, 320));
    clock.setNow(2);
    other.advance(0);
    EXPECT_THAT(widths, ElementsAre(320, 320, 400));
}

TEST_F(EmbeddedShellTest, AnimationsEndUnfinishedWithTheirShell) {
    std::vector<bool> ends;
    {
        OffscreenShell other({.device = DeviceProfile::find("phone-320x568")});
        auto const view = make<UIView>(CGRect{0, 0, 10, 10});
        other.window().addSubview(view);
        UIView::animate({.duration = 1,
                         .animations = [&] { view->setAlpha(0); },
                         .completion = [&](bool finished) { ends.push_back(finished); }});
    }
    shell.frame();
    EXPECT_THAT(ends, ElementsAre(false));
}

using EmbeddedShellDeathTest = EmbeddedShellTest;

TEST_F(EmbeddedShellDeathTest, CallsFromAnotherThreadEndWithTheRule) {
    auto const label = addView({0, 0, 10, 10});
    auto const elsewhere = [](auto call) { std::thread(call).join(); };
    EXPECT_DEATH(elsewhere([&] { shell.frame(); }), "main thread rule was broken: a shell");
    EXPECT_DEATH(elsewhere([&] { label->setAlpha(0.5); }), "main thread rule was broken: a layer or view");
    EXPECT_DEATH(elsewhere([] { EmbeddedShell({.screen = {.size = {1, 1}}}); }), "DispatchQueue::main");
}

} // namespace
} // namespace trelundo
