#pragma once

#include "trelundo/platform/foundation/Result.h"

#include <exception>
#include <filesystem>
#include <memory>

namespace SQLite {
class Database;
} // namespace SQLite

namespace trelundo {

/// Opens or creates a ledger's file (empty: one in memory) and holds it until the database is destroyed. A
/// broken file is renamed and replaced by an empty one, with a warning. One that belongs to something else,
/// cannot be written or is in use is an error, and left untouched.
Result<std::unique_ptr<SQLite::Database>> openLedgerDatabase(std::filesystem::path const& file);

/// Names the file of a ledger and what went wrong with its database.
Error databaseError(std::filesystem::path const& file, std::exception const& failure);

} // namespace trelundo
