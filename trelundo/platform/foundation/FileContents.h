#pragma once

#include "trelundo/platform/foundation/Result.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace trelundo {

/// The bytes of a file of at most `megabytes`. A folder, a pipe or a device is refused without being opened;
/// the error names the file and the reason.
Result<std::string> readFile(std::filesystem::path const& file, std::size_t megabytes);

/// Gives a file new content at once: it is written beside the old one, which stays as it is when that fails.
/// A device or a pipe is written to. The error names the file and the reason.
Result<void> writeFile(std::filesystem::path const& file, std::string_view bytes);

} // namespace trelundo
