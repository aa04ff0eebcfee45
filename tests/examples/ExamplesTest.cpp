#include "examples/shop/Shop.h"
#include "tests/support/Desktop.h"
#include "tests/support/Files.h"
#include "tests/support/RunShell.h"
#include "trelundo/Window.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <filesystem>

using testing::HasSubstr;

namespace trelundo {

namespace {

using namespace test;

std::string const catalogue = sourceFolder() / "tools/paywall/demo/resources/Demonstration.storekit";

/// The command that starts an example.
std::string host(std::string const& name) {
    return quoted(std::string(TRELUNDO_EXAMPLES_FOLDER) + "/" + name + "/" + name) + " " + quoted(catalogue) +
           " app.premium.yearly app.premium.monthly";
}

/// Where a host has a button of the paywall that the examples show; off its window when it has none.
CGPoint placeOf(std::string const& name, EmbeddedScreen const& screen) {
    std::string program, file = catalogue, year = "app.premium.yearly", month = "app.premium.monthly";
    std::array arguments{program.data(), file.data(), year.data(), month.data()};
    auto const shop = *Shop::open(static_cast<int>(arguments.size()), arguments.data());
    VirtualClock clock;
    EmbeddedShell shell({.screen = screen, .clock = &clock});
    shop->openPaywall(shell.window());
    for (; clock.now() < 3; clock.setNow(clock.now() + 1.0 / 60)) shell.step();
    auto const views = shell.accessibleViews();
    auto const found = std::ranges::find(views, name, &AccessibleView::name);
    if (found == views.end()) return {-1, -1};
    return {found->frame.midX(), found->frame.midY()};
}

struct Window {
    char const* program;
    char const* title;
    EmbeddedScreen screen;
    double top = 0; // what the host has above the shell, points
};

class WindowedExampleTest : public testing::TestWithParam<Window> {};

} // namespace

TEST_P(WindowedExampleTest, SellsThePlanWhenContinueIsPressed) {
    Desktop const desktop;
    ASSERT_EQ(desktop.error(), "");
    auto const& window = GetParam();
    auto const place = placeOf("Continue", window.screen);
    ASSERT_GT(place.x, 0);
    Companion running("env LC_ALL=en_US.UTF-8 LANGUAGE=en QT_QUICK_BACKEND=software " + host(window.program));
    ASSERT_TRUE(running.awaitLine("shown"));
    desktop.click(window.title, {place.x, window.top + place.y});
    EXPECT_TRUE(running.awaitLine("sold: app.premium.yearly"));
    EXPECT_EQ(running.status(), 0);
}

INSTANTIATE_TEST_SUITE_P(Hosts, WindowedExampleTest,
                         testing::Values(Window{"minimal_host",
                                                "Minimal host",
                                                {.size = {390, 844},
                                                 .device = DeviceProfile::find("phone-390x844")}},
                                         Window{"sdl_host", "SDL host", {.size = {390, 844}}},
                                         Window{"widgets_host", "Widgets host", {.size = {390, 800}}, 40},
                                         Window{"quick_host", "Quick host", {.size = {390, 800}}, 40}),
                         [](auto const& window) { return std::string(window.param.program); });

TEST(WindowShellTest, TwoAreServedByTheProgramsOwnLoopAtOnceAndAThirdRunsAfterThem) {
    Desktop const desktop;
    ASSERT_EQ(desktop.error(), "");
    Companion host(quoted(TRELUNDO_WINDOW_HOST));
    ASSERT_TRUE(host.awaitLine("shown second"));
    desktop.click("second", {10, 10});
    ASSERT_TRUE(host.awaitLine("pressed second at 320 points"));
    desktop.click("first", {360, 800}); // where the second never lay
    ASSERT_TRUE(host.awaitLine("pressed first at 390 points"));
    ASSERT_TRUE(host.awaitLine("shown third"));
    desktop.click("third", {10, 10});
    EXPECT_TRUE(host.awaitLine("pressed third at 375 points"));
    EXPECT_EQ(host.status(), 0);
}

TEST(PicturesExampleTest, DrawsEachStepOfAPurchaseWithoutADisplay) {
    TemporaryFolder const folder;
    auto const result =
        runShell("cd " + quoted(folder.path()) + " && env -u DISPLAY -u WAYLAND_DISPLAY " + host("pictures"));
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output, HasSubstr("sold: app.premium.yearly"));
    for (auto const* picture : {"light.png", "dark.png", "buying.png"})
        EXPECT_GT(std::filesystem::file_size(folder / picture), 1000u);
    EXPECT_NE(readText(folder / "light.png"), readText(folder / "buying.png"));
}

TEST(TerminalExampleTest, SellsThePlanWithTheNumberThatIsTyped) {
    auto const bought = runShell("echo 2 | " + host("terminal_host"));
    EXPECT_EQ(bought.status, 0);
    EXPECT_THAT(bought.output, HasSubstr("sold: app.premium.monthly"));
    auto const left = runShell("echo 3 | " + host("terminal_host"));
    EXPECT_EQ(left.status, 1);
    EXPECT_THAT(left.output, HasSubstr("Nothing was chosen."));
}

} // namespace trelundo
