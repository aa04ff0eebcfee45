#pragma once

#include <filesystem>

namespace trelundo::test {

/// The root of the source tree, for goldens, scripts and samples.
std::filesystem::path sourceFolder();

} // namespace trelundo::test
