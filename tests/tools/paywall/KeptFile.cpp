#include "tests/tools/paywall/KeptFile.h"

#include "tests/tools/paywall/Program.h"

#include <algorithm>

namespace trelundo::paywall::test {

namespace {

using Lines = std::vector<std::string>;

Lines linesOf(std::string const& text) {
    Lines lines;
    std::istringstream stream{text};
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

/// By the longest common subsequence: `common[i][j]` is its length for what follows line i and line j.
std::string difference(Lines const& kept, Lines const& actual) {
    std::vector common(kept.size() + 1, std::vector<std::size_t>(actual.size() + 1));
    for (auto i = kept.size(); i-- > 0;)
        for (auto j = actual.size(); j-- > 0;)
            common[i][j] = kept[i] == actual[j] ? common[i + 1][j + 1] + 1
                                                : std::max(common[i + 1][j], common[i][j + 1]);
    std::string text;
    for (std::size_t i = 0, j = 0; i < kept.size() || j < actual.size();) {
        if (i < kept.size() && j < actual.size() && kept[i] == actual[j])
            ++i, ++j;
        else if (j == actual.size() || (i < kept.size() && common[i + 1][j] >= common[i][j + 1]))
            text += "\n- " + kept[i++];
        else
            text += "\n+ " + actual[j++];
    }
    return text;
}

} // namespace

testing::AssertionResult isKept(std::filesystem::path const& file, std::string const& actual) {
    if (std::getenv("TRELUNDO_REBASELINE")) writeText(file, actual);
    auto const kept = readText(file);
    if (kept == actual) return testing::AssertionSuccess();
    auto result = testing::AssertionFailure()
                  << file.filename().string() << " differs; see scripts/rebaseline";
    return file.extension() == ".png" ? result : result << difference(linesOf(kept), linesOf(actual));
}

} // namespace trelundo::paywall::test
