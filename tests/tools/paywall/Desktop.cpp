#include "tests/tools/paywall/Desktop.h"

#include "tests/tools/paywall/Program.h"

#include <cerrno>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace trelundo::paywall::test {

namespace {

constexpr int linesDescriptor = 3;
constexpr auto patience = std::chrono::minutes{1}; // for one line, on the slowest machine

/// Moves the mouse, presses keys or changes windows.
void control(std::string const& steps) {
    auto const result = runShell("xdotool " + steps + " 2>&1");
    ASSERT_EQ(result.status, 0) << result.output;
}

} // namespace

Companion::Companion(std::vector<std::string> arguments) {
    std::vector<char*> words;
    for (auto& argument : arguments) words.push_back(argument.data());
    words.push_back(nullptr);
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error{"no pipe"};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], linesDescriptor);
    auto const failure = posix_spawnp(&process_, words[0], &actions, nullptr, words.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    reader_ = ends[0];
    if (failure == 0) return;
    process_ = -1;
    error_ = arguments.front() + " cannot be started (" + std::strerror(failure) +
             "); `scripts/dependencies test` installs it";
}

Companion::~Companion() {
    if (process_ > 0) {
        kill(process_, SIGTERM);
        waitpid(process_, nullptr, 0);
    }
    close(reader_);
}

bool Companion::waitForText() {
    auto const limit = std::chrono::milliseconds{patience}.count();
    pollfd waiting{reader_, POLLIN, 0};
    if (poll(&waiting, 1, static_cast<int>(limit)) <= 0) {
        if (process_ > 0) kill(process_, SIGKILL);
        return false;
    }
    char buffer[4096];
    auto const count = read(reader_, buffer, sizeof buffer);
    if (count <= 0) return false;
    pending_.append(buffer, static_cast<std::size_t>(count));
    return true;
}

std::optional<std::string> Companion::nextLine() {
    auto end = pending_.find('\n');
    for (; end == std::string::npos; end = pending_.find('\n'))
        if (!waitForText()) return std::nullopt;
    auto line = pending_.substr(0, end);
    pending_.erase(0, end + 1);
    return line;
}

int Companion::status() {
    if (process_ <= 0) return -1;
    int status = 0;
    waitpid(process_, &status, 0);
    process_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

Desktop::Desktop()
    : server_({"Xvfb", "-displayfd", std::to_string(linesDescriptor), "-screen", "0",
               std::to_string(width) + "x" + std::to_string(height) + "x24", "-nolisten", "tcp"})
    , error_(server_.error()) {
    if (!error_.empty()) return;
    for (auto const* other : {"WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) unsetenv(other);
    if (auto const number = server_.nextLine())
        setenv("DISPLAY", (":" + *number).c_str(), 1);
    else
        error_ = "Xvfb has ended without opening a display";
}

void Desktop::click(double x, double y) const {
    control("mousemove " + std::to_string(std::lround(x)) + " " + std::to_string(std::lround(y)) +
            " click 1");
}

void Desktop::press(std::string const& key) const { control("key " + key); }

void Desktop::resizeWindow(std::string const& title, double toWidth, double toHeight) const {
    control("search --onlyvisible --name " + quoted(title) + " windowsize " +
            std::to_string(std::lround(toWidth)) + " " + std::to_string(std::lround(toHeight)));
}

} // namespace trelundo::paywall::test
