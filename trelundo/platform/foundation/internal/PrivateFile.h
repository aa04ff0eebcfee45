#pragma once

#include "trelundo/platform/foundation/Result.h"

#include <filesystem>

namespace trelundo {

/// Creates an empty file that its owner alone may read and write. One that exists already is an error; the
/// message gives the system's reason without the name.
Result<void> createPrivateFile(std::filesystem::path const& file);

/// Whether this process may write to an existing file. Does not open it: closing it again would drop the
/// locks that this process may hold on it.
bool isWritable(std::filesystem::path const& file);

} // namespace trelundo
