#include "tests/tools/paywall/KeptFile.h"
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

/// The words after "# KEY: " in a script's comments.
std::vector<std::string> wordsOf(std::filesystem::path const& script, std::string const& key) {
    std::vector<std::string> found;
    std::istringstream lines{readText(script)};
    std::string const prefix = "# " + key + ": ";
    for (std::string line; std::getline(lines, line);) {
        if (!line.starts_with(prefix)) continue;
        std::istringstream words{line.substr(prefix.size())};
        for (std::string word; words >> word;) found.push_back(word);
    }
    return found;
}

class ScriptLogTest : public testing::TestWithParam<std::string> {
protected:
    /// Runs a script on its screen ("# screen:", the first paywall by default) with its options ("#
    /// arguments:").
    static void run(std::string const& name, std::string const& store, std::string const& log) {
        auto const script = scriptFolder() / (name + ".paywall");
        auto const screen = wordsOf(script, "screen");
        std::vector<std::string> arguments{
            "run",      screen.empty() ? "PremiumViewController" : screen.front(),
            "--script", script,
            "--store",  store,
            "--log",    log};
        std::ranges::copy(wordsOf(script, "arguments"), std::back_inserter(arguments));
        auto const result = runPaywall(arguments);
        EXPECT_EQ(result.status, 0) << result.output;
    }
};

/// Every line that a host would see, in its order. What a script names in "# after:" runs before it, on the
/// same store. The expected logs change only through scripts/rebaseline.
TEST_P(ScriptLogTest, IsAsKept) {
    TemporaryFolder folder;
    auto const store = folder / "store.sqlite";
    for (auto const& earlier : wordsOf(scriptFolder() / (GetParam() + ".paywall"), "after"))
        run(earlier, store, "/dev/null");
    auto const log = folder / "log";
    run(GetParam(), store, log);
    EXPECT_TRUE(isKept(scriptFolder() / (GetParam() + ".log"), readText(log)));
}

INSTANTIATE_TEST_SUITE_P(Scripts, ScriptLogTest, testing::ValuesIn(scriptNames()),
                         [](auto const& information) {
                             auto name = information.param;
                             std::ranges::replace(name, '-', '_');
                             return name;
                         });

} // namespace
} // namespace trelundo::paywall::test
