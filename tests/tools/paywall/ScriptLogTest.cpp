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

std::filesystem::path scriptOf(std::string const& name) { return scriptFolder() / (name + ".paywall"); }

/// What follows "# KEY: " among a script's comments, else `otherwise`.
std::string told(std::string const& name, std::string const& key, std::string const& otherwise = {}) {
    std::istringstream lines{readText(scriptOf(name))};
    std::string const prefix = "# " + key + ": ";
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with(prefix)) return line.substr(prefix.size());
    return otherwise;
}

/// Runs a script on its screen ("# screen:") with its options ("# arguments:").
void run(std::string const& name, std::string const& store, std::string const& log) {
    auto const result = runPaywall("run " + told(name, "screen", "PremiumViewController") + " --script " +
                                   quoted(scriptOf(name)) + " --store " + quoted(store) + " --log " +
                                   quoted(log) + " " + told(name, "arguments"));
    EXPECT_EQ(result.status, 0) << result.output;
}

class ScriptLogTest : public testing::TestWithParam<std::string> {};

/// Every line that a host would see, in its order. What a script names in "# after:" runs before it, on the
/// same store. The expected logs change only through scripts/rebaseline.
TEST_P(ScriptLogTest, IsAsKept) {
    TemporaryFolder const folder;
    auto const store = folder / "store.sqlite";
    std::istringstream names{told(GetParam(), "after")};
    for (std::string earlier; names >> earlier;) run(earlier, store, "/dev/null");
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
