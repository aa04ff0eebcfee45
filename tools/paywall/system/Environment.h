#pragma once

#include <filesystem>

namespace trelundo::paywall {

// What the operating system knows of this process.

/// The file of the running program.
std::filesystem::path programFile();

/// Where programs keep a user's data. Need not exist.
std::filesystem::path userDataFolder();

/// Whether somebody watches standard output, rather than a file or another program.
bool isStandardOutputTerminal();

} // namespace trelundo::paywall
