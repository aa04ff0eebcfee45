#pragma once

#include <string_view>

namespace trelundo::paywall {

/// A line on standard output.
void printLine(std::string_view text);

/// A line on standard error that names the program.
void complain(std::string_view text);

} // namespace trelundo::paywall
