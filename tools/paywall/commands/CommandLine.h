#pragma once

#include "tools/paywall/Options.h"

#include <optional>

namespace trelundo::paywall {

/// Reads the command line. Absent when the user asked for help, which has been printed. Bad usage throws a
/// Failure with status 2.
std::optional<Options> parseCommandLine(int argc, char const* const* argv);

} // namespace trelundo::paywall
