#include "tests/tools/paywall/Program.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace trelundo::paywall::test {
namespace {

std::filesystem::path scriptFolder() { return sourceFolder() / "tests/tools/paywall/scripts"; }

std::vector<std::string> scriptNames() {
    std::vector<std::string> names;
    for (auto const& entry : std::filesystem::directory_iterator{scriptFolder()})
        if (entry.path().extension() == ".paywall") names.push_back(entry.path().stem());
    std::ranges::sort(names);
    return names;
}

/// The words after "# arguments:" in a script.
std::vector<std::string> argumentsOf(std::filesystem::path const& script) {
    std::vector<std::string> arguments;
    std::istringstream lines{readText(script)};
    std::string const prefix = "# arguments: ";
    for (std::string line; std::getline(lines, line);) {
        if (!line.starts_with(prefix)) continue;
        std::istringstream words{line.substr(prefix.size())};
        for (std::string word; words >> word;) arguments.push_back(word);
    }
    return arguments;
}

class ScriptLog : public testing::TestWithParam<std::string> {};

/// Every line that a host would see, in its order. The expected logs change only through scripts/rebaseline.
TEST_P(ScriptLog, IsAsKept) {
    auto const script = scriptFolder() / (GetParam() + ".paywall");
    auto const expected = scriptFolder() / (GetParam() + ".log");
    TemporaryFolder folder;
    auto const log = folder / "log";
    std::vector<std::string> arguments{"run", "PremiumViewController", "--script", script, "--log", log};
    std::ranges::copy(argumentsOf(script), std::back_inserter(arguments));
    auto const result = runPaywall(arguments);
    EXPECT_EQ(result.status, 0) << result.output;
    if (std::getenv("TRELUNDO_REBASELINE"))
        std::filesystem::copy_file(log, expected, std::filesystem::copy_options::overwrite_existing);
    EXPECT_EQ(readText(log), readText(expected));
}

INSTANTIATE_TEST_SUITE_P(Scripts, ScriptLog, testing::ValuesIn(scriptNames()), [](auto const& information) {
    auto name = information.param;
    std::ranges::replace(name, '-', '_');
    return name;
});

} // namespace
} // namespace trelundo::paywall::test
