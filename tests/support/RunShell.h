#pragma once

#include <cstdio>
#include <string>
#include <sys/wait.h> // IWYU pragma: keep

namespace trelundo::test {

/// How a command ended.
struct Ended {
    int status;
    std::string output; // standard output and standard error
};

/// As one word for the shell.
inline std::string quoted(std::string const& text) {
    std::string result = "'";
    for (char const c : text) result += c == '\'' ? std::string{"'\\''"} : std::string{c};
    return result + "'";
}

/// Runs a shell command and waits for its end.
inline Ended runShell(std::string const& command) {
    Ended result{-1, {}};
    auto* pipe = popen(command.c_str(), "r");
    char buffer[4096];
    while (auto const count = std::fread(buffer, 1, sizeof buffer, pipe)) result.output.append(buffer, count);
    int const status = pclose(pipe);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return result;
}

} // namespace trelundo::test
