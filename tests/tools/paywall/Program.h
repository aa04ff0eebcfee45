#pragma once

#include "tests/support/SourceFolder.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace trelundo::paywall::test {

using trelundo::test::sourceFolder;

/// A folder of the test's own, gone with it.
class TemporaryFolder {
public:
    TemporaryFolder() {
        auto pattern = (std::filesystem::temp_directory_path() / "paywall-XXXXXX").string();
        path_ = mkdtemp(pattern.data());
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(TemporaryFolder const&) = delete;
    TemporaryFolder& operator=(TemporaryFolder const&) = delete;
    std::filesystem::path operator/(std::string const& name) const { return path_ / name; }

private:
    std::filesystem::path path_;
};

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
    std::string command = quoted(PAYWALL_PROGRAM);
    for (auto const& argument : arguments) command += " " + quoted(argument);
    return runShell(command + " 2>&1 </dev/null");
}

inline std::string readText(std::filesystem::path const& path) {
    std::ifstream file{path, std::ios::binary};
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

inline std::filesystem::path writeText(std::filesystem::path const& path, std::string const& text) {
    std::ofstream{path, std::ios::binary} << text;
    return path;
}

} // namespace trelundo::paywall::test
