#include "trelundo/platform/window/WindowShell.h"

#include "trelundo/platform/window/OffscreenShell.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

namespace trelundo {
namespace {

[[noreturn]] void openAndTell() {
    int argc = 0;
    char* argv[] = {nullptr};
    auto const shell = WindowShell::open(argc, argv, {.device = DeviceProfile::find("phone-320x568")});
    std::fprintf(stderr, "%s\n", shell ? "opened" : shell.error().message.c_str());
    std::exit(shell ? 0 : 3);
}

TEST(WindowShellDeathTest, FailsWithAnErrorWhereNoWindowCanBeOpened) {
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // in a process where no other test has drawn yet
    auto const ended = testing::ExitedWithCode(3);
    for (auto const* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) unsetenv(name);
    EXPECT_EXIT(openAndTell(), ended, "There is no display");
    EXPECT_EXIT(
        {
            OffscreenShell const first({.device = DeviceProfile::find("phone-320x568")});
            openAndTell();
        },
        ended, "Drawing without a display has begun already");
}

} // namespace
} // namespace trelundo
