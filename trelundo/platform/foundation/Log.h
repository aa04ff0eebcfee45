#pragma once

#include <functional>
#include <string_view>

namespace trelundo {

/// Writes a console warning: one line on standard error unless a sink is set. Never ends the program.
void logWarning(std::string_view text);

/// Sends warnings elsewhere (tests count them); null returns to standard error.
void setWarningSink(std::function<void(std::string_view)> write);

} // namespace trelundo
