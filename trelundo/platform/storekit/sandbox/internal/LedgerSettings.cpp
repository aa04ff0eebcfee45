#include "trelundo/platform/storekit/sandbox/internal/LedgerSettings.h"

#include <SQLiteCpp/Database.h>
#include <array>
#include <sqlite3.h>

namespace trelundo {

void applyDefensiveSettings(SQLite::Database& database) {
    struct Setting {
        int name;
        int value;
    };
    static constexpr std::array settings{
        Setting{SQLITE_DBCONFIG_DEFENSIVE, 1},
        Setting{SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0},
        Setting{SQLITE_DBCONFIG_ENABLE_TRIGGER, 0},
        Setting{SQLITE_DBCONFIG_ENABLE_VIEW, 0},
        Setting{SQLITE_DBCONFIG_DQS_DML, 0},
        Setting{SQLITE_DBCONFIG_DQS_DDL, 0},
        // The ledger keeps this rule itself: the library would look through all rows for each one that goes.
        Setting{SQLITE_DBCONFIG_ENABLE_FKEY, 0},
    };
    for (auto const& each : settings) sqlite3_db_config(database.getHandle(), each.name, each.value, nullptr);
    sqlite3_limit(database.getHandle(), SQLITE_LIMIT_ATTACHED, 0);
    database.exec("PRAGMA cell_size_check = ON; PRAGMA mmap_size = 0");
}

void applyDurableSettings(SQLite::Database& database) {
    // The lock comes first: what is read before it makes the library share the log through a file of its own.
    // A hundred pages are some thirty purchases: no more than these stand in the log alone.
    database.exec("PRAGMA locking_mode = EXCLUSIVE; PRAGMA synchronous = FULL; "
                  "PRAGMA wal_autocheckpoint = 100");
}

} // namespace trelundo
