#include "trelundo/platform/storekit/sandbox/internal/LedgerDatabase.h"

#include "trelundo/platform/foundation/Log.h"
#include "trelundo/platform/foundation/internal/PrivateFile.h"
#include "trelundo/platform/storekit/sandbox/internal/LedgerTable.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <array>
#include <sqlite3.h>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

namespace trelundo {

namespace {

namespace fs = std::filesystem;

constexpr int applicationIdentifier = 0x54524c53; // "TRLS"
constexpr int schemaVersion = 1;

/// Why a file cannot serve, as a sentence without the file's name.
struct Refusal : std::runtime_error {
    using std::runtime_error::runtime_error;
};

std::string reasonOf(int code, char const* message) {
    switch (code & 0xff) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return "the store is in use by another process";
    case SQLITE_READONLY:
    case SQLITE_PERM:
    case SQLITE_AUTH:
    case SQLITE_CANTOPEN:
        return "the store cannot be written";
    case SQLITE_FULL:
        return "the disk is full";
    case SQLITE_IOERR:
        return "the disk cannot be read or written";
    default:
        return message;
    }
}

bool isBroken(SQLite::Exception const& failure) {
    return failure.getErrorCode() == SQLITE_NOTADB || failure.getErrorCode() == SQLITE_CORRUPT;
}

/// Makes sure that there is a writable file, new ones being readable by their owner alone.
void prepareFile(fs::path const& file) {
    std::error_code unknown; // left to the attempt to create the file
    auto const status = fs::status(file, unknown);
    if (!fs::exists(status)) {
        auto const created = createPrivateFile(file);
        if (!created) throw Refusal("the store cannot be created: " + created.error().message);
        return;
    }
    if (!fs::is_regular_file(status)) throw Refusal("not a file");
    if (!isWritable(file)) throw Refusal("the store is read-only");
}

/// Renames a broken file, with what the database keeps beside it, to the first free name. Returns the new
/// name.
fs::path setAside(fs::path const& file) {
    auto const named = [&](int number) {
        return fs::path{file.string() + ".broken-" + std::to_string(number)};
    };
    int number = 1;
    while (fs::exists(named(number))) ++number;
    for (auto const* suffix : {"", "-journal", "-wal", "-shm"}) {
        auto const part = fs::path{file.string() + suffix};
        if (fs::exists(part)) fs::rename(part, named(number).string() + suffix);
    }
    return named(number);
}

void applyDefensiveSettings(SQLite::Database& database) {
    struct Setting {
        int name;
        int value;
    };
    static constexpr std::array settings{
        Setting{SQLITE_DBCONFIG_DEFENSIVE, 1},      Setting{SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0},
        Setting{SQLITE_DBCONFIG_ENABLE_TRIGGER, 0}, Setting{SQLITE_DBCONFIG_ENABLE_VIEW, 0},
        Setting{SQLITE_DBCONFIG_DQS_DML, 0},        Setting{SQLITE_DBCONFIG_DQS_DDL, 0},
        Setting{SQLITE_DBCONFIG_ENABLE_FKEY, 1},
    };
    for (auto const& each : settings) sqlite3_db_config(database.getHandle(), each.name, each.value, nullptr);
    sqlite3_limit(database.getHandle(), SQLITE_LIMIT_ATTACHED, 0);
    database.exec("PRAGMA cell_size_check = ON; PRAGMA mmap_size = 0; PRAGMA synchronous = FULL; "
                  "PRAGMA locking_mode = EXCLUSIVE");
}

std::vector<std::string> schemaOf(SQLite::Database& database) {
    SQLite::Statement query{database,
                            "SELECT type, name, tbl_name, sql FROM sqlite_schema ORDER BY type, name"};
    std::vector<std::string> objects;
    while (query.executeStep()) {
        std::string object;
        for (int i = 0; i < query.getColumnCount(); ++i) object += query.getColumn(i).getString() + '\n';
        objects.push_back(std::move(object));
    }
    return objects;
}

int number(SQLite::Database& database, char const* pragma) { return database.execAndGet(pragma).getInt(); }

void createSchema(SQLite::Database& database) {
    database.exec(ledgerSchema);
    database.exec("PRAGMA application_id = " + std::to_string(applicationIdentifier));
    database.exec("PRAGMA user_version = " + std::to_string(schemaVersion));
}

bool isNew(SQLite::Database& database) {
    return number(database, "PRAGMA application_id") == 0 && number(database, "PRAGMA user_version") == 0 &&
           schemaOf(database).empty();
}

void requireOwnSchema(SQLite::Database& database) {
    if (number(database, "PRAGMA application_id") != applicationIdentifier)
        throw Refusal("the file belongs to another application");
    auto const version = number(database, "PRAGMA user_version");
    if (version != schemaVersion)
        throw Refusal("the store has schema version " + std::to_string(version) + ", not " +
                      std::to_string(schemaVersion));
    SQLite::Database model{":memory:", SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE};
    model.exec(ledgerSchema);
    if (schemaOf(database) != schemaOf(model)) throw Refusal("the store has another schema");
}

void requireSoundness(SQLite::Database& database) {
    auto const verdict = database.execAndGet("PRAGMA quick_check(1)").getString();
    if (verdict != "ok") throw SQLite::Exception(verdict, SQLITE_CORRUPT);
}

/// Locks the file for as long as it is open, and makes sure that it is a ledger's before anything is changed.
void takeOver(SQLite::Database& database) {
    SQLite::Transaction transaction{database, SQLite::TransactionBehavior::EXCLUSIVE};
    if (isNew(database)) {
        createSchema(database);
    } else {
        requireOwnSchema(database);
        requireSoundness(database);
    }
    transaction.commit();
}

std::unique_ptr<SQLite::Database> openFile(fs::path const& file) {
    bool const isInMemory = file.empty();
    if (!isInMemory) prepareFile(file);
    auto database = std::make_unique<SQLite::Database>(isInMemory ? ":memory:" : file.string(),
                                                       SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    if (sqlite3_db_readonly(database->getHandle(), "main") == 1) throw Refusal("the store is read-only");
    applyDefensiveSettings(*database);
    takeOver(*database);
    if (!isInMemory) {
        fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write);
        database->exec("PRAGMA journal_mode = WAL");
    }
    return database;
}

/// As openFile(), but a broken file makes room for a new one.
std::unique_ptr<SQLite::Database> openOrReplaceFile(fs::path const& file) {
    try {
        return openFile(file);
    } catch (SQLite::Exception const& failure) {
        if (!isBroken(failure) || file.empty()) throw;
    }
    auto const kept = setAside(file);
    logWarning(file.string() + ": the store was broken; it was kept as " + kept.string());
    return openFile(file);
}

} // namespace

Error databaseError(fs::path const& file, std::exception const& failure) {
    auto const name = file.empty() ? std::string{"the store in memory"} : file.string();
    auto const* database = dynamic_cast<SQLite::Exception const*>(&failure);
    return {name + ": " + (database ? reasonOf(database->getErrorCode(), failure.what()) : failure.what())};
}

Result<std::unique_ptr<SQLite::Database>> openLedgerDatabase(fs::path const& file) {
    try {
        return openOrReplaceFile(file);
    } catch (std::exception const& failure) {
        return databaseError(file, failure);
    }
}

} // namespace trelundo
