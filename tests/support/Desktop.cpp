#include "tests/support/Desktop.h"

#include "tests/support/RunShell.h"

#include <cmath>
#include <csignal>
#include <cstdlib>
#include <gtest/gtest.h>
#include <utility>

namespace trelundo::test {

namespace {

/// Moves the mouse, presses keys or changes windows.
void control(std::string const& steps) {
    auto const result = runShell("xdotool " + steps + " 2>&1");
    ASSERT_EQ(result.status, 0) << result.output;
}

} // namespace

// The first line tells the process, which the command then becomes.
Companion::Companion(std::string const& command)
    : pipe_(popen(("echo $$; exec timeout 120 " + command).c_str(), "r")) {
    if (auto const line = nextLine()) process_ = std::stoi(*line);
}

Companion::~Companion() {
    if (pipe_) kill(process_, SIGTERM);
    status();
}

std::optional<std::string> Companion::nextLine() {
    std::string line;
    for (int c = std::fgetc(pipe_); c != '\n'; c = std::fgetc(pipe_)) {
        if (c == EOF) return std::nullopt;
        line += static_cast<char>(c);
    }
    return line;
}

bool Companion::awaitLine(std::string const& text) {
    while (auto const line = nextLine())
        if (line->starts_with(text)) return true;
    return false;
}

int Companion::status() {
    if (!pipe_) return -1;
    int const status = pclose(std::exchange(pipe_, nullptr));
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

Desktop::Desktop()
    : server_("Xvfb -displayfd 1 -screen 0 " + std::to_string(width) + "x" + std::to_string(height) +
              "x24 -nolisten tcp") {
    for (auto const* other : {"WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) unsetenv(other);
    if (auto const number = server_.nextLine())
        setenv("DISPLAY", (":" + *number).c_str(), 1);
    else
        error_ = "Xvfb opens no display; `scripts/dependencies test` installs it";
}

CGPoint Desktop::originOf(std::string const& title) const {
    auto const told = runShell("xdotool search --onlyvisible --name " + quoted(title) + " getwindowgeometry");
    CGPoint origin{-1, -1};
    auto const place = told.output.find("Position: ");
    if (place == std::string::npos ||
        std::sscanf(told.output.c_str() + place, "Position: %lf,%lf", &origin.x, &origin.y) != 2)
        ADD_FAILURE() << "There is no window \"" << title << "\": " << told.output;
    return origin;
}

void Desktop::click(double x, double y) const {
    control("mousemove " + std::to_string(std::lround(x)) + " " + std::to_string(std::lround(y)) +
            " click 1");
}

void Desktop::click(std::string const& title, CGPoint place) const {
    auto const origin = originOf(title);
    click(origin.x + place.x, origin.y + place.y);
}

void Desktop::press(std::string const& key) const { control("key " + key); }

void Desktop::resizeWindow(std::string const& title, double toWidth, double toHeight) const {
    control("search --onlyvisible --name " + quoted(title) + " windowsize " +
            std::to_string(std::lround(toWidth)) + " " + std::to_string(std::lround(toHeight)));
}

} // namespace trelundo::test
