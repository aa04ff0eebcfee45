#pragma once

namespace SQLite {
class Database;
} // namespace SQLite

namespace trelundo {

/// Before anything is read of a file that may be hostile: nothing in it runs, and nothing else is reached.
void applyDefensiveSettings(SQLite::Database& database);

/// Before anything is written: what is committed is on the disk, and the file belongs to this connection.
void applyDurableSettings(SQLite::Database& database);

} // namespace trelundo
