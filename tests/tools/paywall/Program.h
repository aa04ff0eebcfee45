#pragma once

#include "tests/support/Files.h"    // IWYU pragma: export
#include "tests/support/RunShell.h" // IWYU pragma: export

#include <string>
#include <vector>

namespace trelundo::paywall::test {

using namespace trelundo::test;

/// Runs the tool with `arguments`.
inline Ended runPaywall(std::vector<std::string> const& arguments) {
    std::string command = quoted(TRELUNDO_PAYWALL_PROGRAM);
    for (auto const& argument : arguments) command += " " + quoted(argument);
    return runShell(command + " 2>&1 </dev/null");
}

} // namespace trelundo::paywall::test
