#pragma once

#include "tests/tools/paywall/Program.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace trelundo::paywall::test {

/// Whether a kept file holds `actual`; a failure lists the lines that differ, "-" for kept and "+" for actual
/// ones. With TRELUNDO_REBASELINE set the file takes `actual` first, which only scripts/rebaseline may ask
/// for.
inline testing::AssertionResult isKept(std::filesystem::path const& file, std::string const& actual) {
    if (std::getenv("TRELUNDO_REBASELINE")) writeText(file, actual);
    if (readText(file) == actual) return testing::AssertionSuccess();
    auto result = testing::AssertionFailure()
                  << file.filename().string() << " differs; see scripts/rebaseline\n";
    if (file.extension() == ".png") return result;
    TemporaryFolder const folder;
    auto const now = writeText(folder / "now", actual);
    return result << runShell("diff -U0 " + quoted(file) + " " + quoted(now) + " | tail -n +3").output;
}

} // namespace trelundo::paywall::test
