#pragma once

#include <filesystem>

namespace trelundo::paywall {

/// Makes `folder` and those above it where they are missing. What cannot be made throws a Failure.
void makeFolder(std::filesystem::path const& folder);

} // namespace trelundo::paywall
