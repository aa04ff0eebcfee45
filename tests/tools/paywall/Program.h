#pragma once

#include "tests/support/Files.h"    // IWYU pragma: export
#include "tests/support/RunShell.h" // IWYU pragma: export

#include <string>

namespace trelundo::paywall::test {

using namespace trelundo::test;

/// Runs the tool with a command line as a shell reads it.
inline Ended runPaywall(std::string const& commandLine) {
    return runShell(quoted(TRELUNDO_PAYWALL_PROGRAM) + " " + commandLine + " 2>&1 </dev/null");
}

} // namespace trelundo::paywall::test
