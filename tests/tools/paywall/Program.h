#pragma once

#include "tests/support/Files.h" // IWYU pragma: export

#include <cstdio>
#include <string>
#include <vector>

namespace trelundo::paywall::test {

using namespace trelundo::test;

struct Result {
    int status;
    std::string output; // standard output and standard error
};

inline std::string quoted(std::string const& text) {
    std::string result = "'";
    for (char const c : text) result += c == '\'' ? std::string{"'\\''"} : std::string{c};
    return result + "'";
}

/// Runs a shell command and waits for its end.
inline Result runShell(std::string const& command) {
    Result result{-1, {}};
    auto* pipe = popen(command.c_str(), "r");
    char buffer[4096];
    while (auto const count = std::fread(buffer, 1, sizeof buffer, pipe)) result.output.append(buffer, count);
    int const status = pclose(pipe);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return result;
}

/// Runs the tool with `arguments`.
inline Result runPaywall(std::vector<std::string> const& arguments) {
    std::string command = quoted(TRELUNDO_PAYWALL_PROGRAM);
    for (auto const& argument : arguments) command += " " + quoted(argument);
    return runShell(command + " 2>&1 </dev/null");
}

} // namespace trelundo::paywall::test
