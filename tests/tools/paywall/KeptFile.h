#pragma once

#include <filesystem>
#include <gtest/gtest.h>
#include <string>

namespace trelundo::paywall::test {

/// Whether a kept file holds `actual`; a failure lists the lines that differ, "-" for kept and "+" for actual
/// ones. With TRELUNDO_REBASELINE set the file takes `actual` first, which only scripts/rebaseline may ask
/// for.
testing::AssertionResult isKept(std::filesystem::path const& file, std::string const& actual);

} // namespace trelundo::paywall::test
