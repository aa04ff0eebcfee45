#include "trelundo/platform/storekit/sandbox/internal/SandboxLedger.h"
#include "trelundo/platform/storekit/sandbox/internal/SandboxLedgerDatabase.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sqlite3.h>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace trelundo {

namespace {

namespace fs = std::filesystem;

constexpr int applicationIdentifier = 0x54524c53; // "TRLS"
constexpr int schemaVersion = 1;
constexpr char const* schema = R"sql(
CREATE TABLE transactions (
    id INTEGER PRIMARY KEY CHECK (id > 0 AND id < 9000000000000000),
    product TEXT NOT NULL,
    quantity INTEGER NOT NULL,
    username TEXT,
    ask_to_buy INTEGER NOT NULL CHECK (ask_to_buy IN (0, 1)),
    offer TEXT,
    offer_key TEXT,
    offer_nonce TEXT,
    offer_signature TEXT,
    offer_time INTEGER,
    state INTEGER NOT NULL CHECK (state BETWEEN 0 AND 5),
    restorable INTEGER NOT NULL CHECK (restorable IN (0, 1)),
    finished INTEGER NOT NULL CHECK (finished IN (0, 1)),
    error_domain TEXT,
    error_code INTEGER,
    date REAL,
    original INTEGER REFERENCES transactions (id)
) STRICT;
CREATE TABLE owned (
    product TEXT PRIMARY KEY,
    original INTEGER NOT NULL REFERENCES transactions (id)
) STRICT, WITHOUT ROWID;
)sql";

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
        return "the disk cannot be written";
    default:
        return message;
    }
}

bool isBroken(SQLite::Exception const& failure) {
    return failure.getErrorCode() == SQLITE_NOTADB || failure.getErrorCode() == SQLITE_CORRUPT;
}

/// Makes sure that there is a writable file, new ones being readable by their owner alone.
void prepareFile(fs::path const& file) {
    struct stat status {};
    if (::stat(file.c_str(), &status) == 0) {
        // Opening an existing file here, and closing it again, would drop the locks that this process may
        // hold on it.
        if (!S_ISREG(status.st_mode)) throw Refusal("not a file");
        if (::access(file.c_str(), W_OK) != 0) throw Refusal("the store is read-only");
        return;
    }
    int const descriptor = ::open(file.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor < 0)
        throw Refusal("the store cannot be created: " + std::generic_category().message(errno));
    ::close(descriptor);
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

} // namespace

std::string describeDatabaseFailure(fs::path const& file, std::exception const& failure) {
    auto const name = file.empty() ? std::string{"the store in memory"} : file.string();
    auto const* database = dynamic_cast<SQLite::Exception const*>(&failure);
    return name + ": " + (database ? reasonOf(database->getErrorCode(), failure.what()) : failure.what());
}

SandboxLedger::Opened SandboxLedger::open(Options options) {
    bool isFileBroken = false;
    auto result = attempt(options, isFileBroken);
    if (!isFileBroken || options.file.empty()) return result;
    try {
        auto const target = setAside(options.file);
        result = attempt(options, isFileBroken);
        result.setAside = target.string();
    } catch (std::exception const& failure) {
        result.error = describeDatabaseFailure(options.file, failure);
    }
    return result;
}

SandboxLedger::Opened SandboxLedger::attempt(Options const& options, bool& isFileBroken) {
    Opened result;
    try {
        std::unique_ptr<SandboxLedger> ledger{new SandboxLedger(options)};
        ledger->openDatabase();
        result.ledger = std::move(ledger);
    } catch (std::exception const& failure) {
        auto const* database = dynamic_cast<SQLite::Exception const*>(&failure);
        isFileBroken = database && isBroken(*database);
        result.error = describeDatabaseFailure(options.file, failure);
    }
    return result;
}

void SandboxLedger::openDatabase() {
    bool const isInMemory = options_.file.empty();
    if (!isInMemory) prepareFile(options_.file);
    database_ = std::make_unique<SQLite::Database>(isInMemory ? ":memory:" : options_.file.string(),
                                                   SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    if (sqlite3_db_readonly(database_->getHandle(), "main") == 1) throw Refusal("the store is read-only");
    applyDefensiveSettings(*database_);
    takeOver();
    if (!isInMemory) {
        fs::permissions(options_.file, fs::perms::owner_read | fs::perms::owner_write);
        database_->exec("PRAGMA journal_mode = WAL");
    }
    auto const last = database_->execAndGet("SELECT coalesce(max(id), 0) FROM transactions").getInt64();
    nextIdentifier_ = std::max(options_.firstIdentifier, last + 1);
}

/// Locks the file for as long as it is open, and makes sure that it is this store's own before anything is
/// changed.
void SandboxLedger::takeOver() {
    SQLite::Transaction transaction{*database_, SQLite::TransactionBehavior::EXCLUSIVE};
    if (isNew()) {
        createSchema();
    } else {
        requireOwnSchema();
        requireSoundness();
    }
    transaction.commit();
}

bool SandboxLedger::isNew() const {
    return number(*database_, "PRAGMA application_id") == 0 &&
           number(*database_, "PRAGMA user_version") == 0 && schemaOf(*database_).empty();
}

void SandboxLedger::createSchema() {
    database_->exec(schema);
    database_->exec("PRAGMA application_id = " + std::to_string(applicationIdentifier));
    database_->exec("PRAGMA user_version = " + std::to_string(schemaVersion));
}

void SandboxLedger::requireOwnSchema() const {
    if (number(*database_, "PRAGMA application_id") != applicationIdentifier)
        throw Refusal("the file belongs to another application");
    auto const version = number(*database_, "PRAGMA user_version");
    if (version != schemaVersion)
        throw Refusal("the store has schema version " + std::to_string(version) + ", not " +
                      std::to_string(schemaVersion));
    SQLite::Database model{":memory:", SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE};
    model.exec(schema);
    if (schemaOf(*database_) != schemaOf(model)) throw Refusal("the store has another schema");
}

void SandboxLedger::requireSoundness() const {
    auto const verdict = database_->execAndGet("PRAGMA quick_check(1)").getString();
    if (verdict != "ok") throw SQLite::Exception(verdict, SQLITE_CORRUPT);
}

} // namespace trelundo
