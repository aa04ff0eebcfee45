#include "tests/tools/paywall/Desktop.h"

#include <cerrno>
#include <chrono>
#include <cmath>
#include <csignal>
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

std::vector<std::string> changedEnvironment(std::map<std::string, std::string> const& changes) {
    std::vector<std::string> all;
    for (auto** entry = environ; *entry; ++entry) {
        std::string const text{*entry};
        if (!changes.contains(text.substr(0, text.find('=')))) all.push_back(text);
    }
    for (auto const& [name, value] : changes)
        if (!value.empty()) all.push_back(name + "=" + value);
    return all;
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> all;
    for (auto& text : texts) all.push_back(text.data());
    all.push_back(nullptr);
    return all;
}

} // namespace

Companion::Companion(std::vector<std::string> const& arguments,
                     std::map<std::string, std::string> const& environment) {
    auto words = arguments;
    auto variables = changedEnvironment(environment);
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error{"no pipe"};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], linesDescriptor);
    auto const failure = posix_spawnp(&process_, words.front().c_str(), &actions, nullptr,
                                      pointers(words).data(), pointers(variables).data());
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    reader_ = ends[0];
    if (failure == 0) return;
    process_ = -1;
    error_ = words.front() + " cannot be started (" + std::strerror(failure) +
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
    auto const number = server_.nextLine();
    if (number)
        display_ = ":" + *number;
    else
        error_ = "Xvfb has ended without opening a display";
}

std::map<std::string, std::string> Desktop::environment() const {
    return {{"DISPLAY", display_}, {"WAYLAND_DISPLAY", ""}, {"QT_QPA_PLATFORM", ""}};
}

void Desktop::control(std::vector<std::string> const& arguments) const {
    std::vector<std::string> words{"xdotool"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    Companion tool{words, environment()};
    ASSERT_EQ(tool.error(), "");
    ASSERT_EQ(tool.status(), 0) << "xdotool " << arguments.front();
}

void Desktop::click(double x, double y) const {
    control({"mousemove", std::to_string(std::lround(x)), std::to_string(std::lround(y)), "click", "1"});
}

void Desktop::press(std::string const& key) const { control({"key", key}); }

void Desktop::resizeWindow(std::string const& title, double toWidth, double toHeight) const {
    control({"search", "--onlyvisible", "--name", title, "windowsize", std::to_string(std::lround(toWidth)),
             std::to_string(std::lround(toHeight))});
}

} // namespace trelundo::paywall::test
