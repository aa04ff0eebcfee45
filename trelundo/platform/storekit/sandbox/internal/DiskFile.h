#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

namespace trelundo {

/// The bytes of a file, read in the way in which the database library reads; none when there is no such file.
/// Throws a LedgerRefusal for what is no file or has more than `limit` bytes, and a SQLite::Exception when it
/// cannot be read.
std::string readDiskFile(std::filesystem::path const& file, std::size_t limit);

} // namespace trelundo
