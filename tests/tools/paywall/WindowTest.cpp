#include "tests/support/Desktop.h"
#include "tests/tools/paywall/Program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <array>
#include <memory>

namespace trelundo::paywall::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;

/// The first view of a name in what `describe` tells; null when there is none.
json findView(json const& view, std::string const& name) {
    if (view.value("name", "") == name) return view;
    for (auto const& subview : view.value("subviews", json::array()))
        if (auto found = findView(subview, name); !found.is_null()) return found;
    return nullptr;
}

/// The first paywall in a real window. What to click comes from `describe` and from what the window tells of
/// its place; every wait is for a line of the log.
class WindowTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(desktop.error(), ""); }

    void show(std::string const& options) {
        common = screen + " --fake-clock " + options;
        auto const command = quoted(TRELUNDO_PAYWALL_PROGRAM) + " show " + common + " --store " +
                             quoted(folder / "store.sqlite") + " --log /dev/fd/3 3>&1 1>&2";
        tool = std::make_unique<Companion>(command);
        placement = awaitLine({{"kind", "window"}, {"cause", "shown"}});
    }

    /// Reads on until a line has these fields, and gives it; null with a failure when the log ends before.
    json awaitLine(json const& fields) {
        while (auto const text = tool->nextLine()) {
            log += *text + "\n";
            auto const line = json::parse(*text);
            auto told = line;
            told.update(fields);
            if (told == line) return line;
        }
        ADD_FAILURE() << "no line with " << fields << " in:\n" << log;
        return nullptr;
    }

    json describe(std::string const& options = {}) const {
        return json::parse(runPaywall("describe " + common + options).output);
    }

    void click(json const& description, std::string const& name) {
        auto const frame = findView(description, name).at("frame").get<std::array<double, 4>>();
        auto const origin = placement.at("origin").get<std::array<double, 2>>();
        double const zoom = placement.at("zoom");
        desktop.click(origin[0] + (frame[0] + frame[2] / 2) * zoom,
                      origin[1] + (frame[1] + frame[3] / 2) * zoom);
    }

    /// Reads what is left, and gives the exit status.
    int end() {
        while (auto const text = tool->nextLine()) log += *text + "\n";
        return tool->status();
    }

    std::string const screen = "PremiumViewController";
    Desktop desktop;
    TemporaryFolder folder;
    std::string common; // options of the window and of its description
    std::unique_ptr<Companion> tool;
    json placement;
    std::string log; // as far as read
};

TEST_F(WindowTest, SellsThePlanThatIsClicked) {
    ASSERT_NO_FATAL_FAILURE(show(""));
    EXPECT_EQ(placement.value("size", json{}), json({390, 844}));
    EXPECT_EQ(placement.value("zoom", 0.0), 1);
    auto const description = describe();
    click(description, "premiumButtons[1]");
    awaitLine({{"kind", "text"}, {"view", "premiumButtons[1]"}});
    click(description, "continueButton");
    awaitLine({{"kind", "payment"}, {"product", "app.premium.monthly"}});
    auto const bought = awaitLine({{"kind", "transaction"}, {"state", "purchased"}});
    awaitLine({{"kind", "finished"}, {"id", bought.value("id", "")}});
    awaitLine({{"kind", "notification"}, {"name", "TrelundoKitPremiumWillDismissNotificationName"}});
    awaitLine({{"kind", "dismissed"}, {"screen", screen}});
    awaitLine({{"kind", "notification"}, {"name", "TrelundoKitPremiumDidDismissNotificationName"}});
    EXPECT_EQ(end(), 0);
    auto const listed = runPaywall("store list --store " + quoted(folder / "store.sqlite")).output;
    EXPECT_THAT(listed, HasSubstr(bought.value("id", "") + "  app.premium.monthly  purchased  finished"));
}

TEST_F(WindowTest, KeysAnswerAlertsAndCloseNothingElse) {
    auto catalogue =
        json::parse(readText(sourceFolder() / "tools/paywall/demo/resources/Demonstration.storekit"));
    catalogue["settings"]["_failTransactionsEnabled"] = true;
    ASSERT_NO_FATAL_FAILURE(
        show("--catalogue " + quoted(writeText(folder / "Failing.storekit", catalogue.dump()))));
    desktop.press("Escape");
    desktop.press("Return");
    click(describe(), "continueButton");
    awaitLine({{"kind", "alert"}, {"preferred", "Try Again"}});
    // None of the alert's actions is one that cancels.
    desktop.press("Escape");
    desktop.press("Return");
    awaitLine({{"kind", "alert-dismissed"}, {"action", "Try Again"}});
    awaitLine({{"kind", "alert"}, {"preferred", "Try Again"}});
    desktop.press("ctrl+q");
    EXPECT_EQ(end(), 0);
    EXPECT_THAT(log, testing::Not(HasSubstr("\"dismissed\"")));
}

TEST_F(WindowTest, TakesItsDeviceAlongWhenItIsResized) {
    ASSERT_NO_FATAL_FAILURE(show("--device tablet-820x1180"));
    auto const zoom = placement.value("zoom", 0.0);
    EXPECT_LT(zoom, 1) << "the tablet is higher than the desktop";
    EXPECT_LE(1180 * zoom, Desktop::height);
    desktop.resizeWindow(screen, 600 * zoom, 700 * zoom);
    auto const size =
        awaitLine({{"kind", "window"}, {"cause", "resized"}}).value("size", json::array({0, 0}));
    EXPECT_NEAR(size[0].get<double>(), 600, 1);
    EXPECT_NEAR(size[1].get<double>(), 700, 1);
    // Pulled to the other orientation it is the turned tablet itself.
    desktop.resizeWindow(screen, 1180 * zoom, 820 * zoom);
    placement = awaitLine({{"kind", "window"}, {"cause", "resized"}, {"size", {1180, 820}}});
    auto const description = describe(" --landscape");
    click(description, "premiumButtons[2]");
    awaitLine({{"kind", "text"}, {"view", "premiumButtons[2]"}});
    click(description, "closeButton");
    awaitLine({{"kind", "dismissed"}, {"screen", screen}});
    EXPECT_EQ(end(), 0);
}

TEST(WindowWithoutDisplayTest, IsRefusedWithTheReason) {
    for (std::string const display : {"", ":4711", "nonsense"}) { // none, and two that nobody serves
        auto const result = runShell("env -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM DISPLAY=" + display + " " +
                                     quoted(TRELUNDO_PAYWALL_PROGRAM) + " show PremiumViewController 2>&1");
        EXPECT_EQ(result.status, 1) << display;
        EXPECT_THAT(result.output, HasSubstr("no display"));
    }
}

} // namespace
} // namespace trelundo::paywall::test
