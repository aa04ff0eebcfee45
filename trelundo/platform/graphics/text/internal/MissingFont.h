#pragma once

namespace trelundo {

/// Logs that no font shows `character` and which Debian package has one: once for each script, for the
/// scripts of East Asia together, and for emoji. Nothing for what scripts share, which comes with their
/// letters, and for characters without a meaning that all agree on.
void logMissingFont(char32_t character);

} // namespace trelundo
