#include "trelundo/platform/storekit/sandbox/internal/LedgerDatabase.h"

#include "trelundo/platform/foundation/Log.h"
#include "trelundo/platform/foundation/internal/PrivateFile.h"
#include "trelundo/platform/storekit/sandbox/internal/LedgerFailure.h"
#include "trelundo/platform/storekit/sandbox/internal/LedgerParts.h"
#include "trelundo/platform/storekit/sandbox/internal/LedgerSettings.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Exception.h>
#include <SQLiteCpp/Transaction.h>
#include <sqlite3.h>
#include <string>
#include <system_error>

namespace trelundo {

namespace {

namespace fs = std::filesystem;

constexpr auto inUse = "the store is in use by another process";
constexpr int attempts = 3; // at opening, while the disk fails

fs::path logOf(fs::path const& file) { return file.string() + "-wal"; }

fs::path lockOf(fs::path const& file) { return file.string() + "-lock"; }

/// The one name of a file, which may not exist yet.
fs::path oneNameOf(fs::path const& file) {
    std::error_code failure;
    auto const found = fs::weakly_canonical(fs::absolute(file, failure), failure);
    if (failure) throw LedgerRefusal("the store cannot be found: " + failure.message());
    return found;
}

void require(int status) {
    if (status != SQLITE_OK) throw SQLite::Exception(sqlite3_errstr(status), status);
}

bool isInUse(SQLite::Exception const& failure) { return failure.getErrorCode() == SQLITE_BUSY; }

void createSchema(SQLite::Database& database, LedgerForm const& form) {
    database.exec(form.schema);
    database.exec("PRAGMA application_id = " + std::to_string(form.applicationIdentifier));
    database.exec("PRAGMA user_version = " + std::to_string(form.version));
}

bool isEmpty(SQLite::Database& database) {
    return database.execAndGet("SELECT count(*) FROM sqlite_schema").getInt() == 0;
}

} // namespace

void requireUnused(fs::path const& file) {
    if (FileLock::isHeld(lockOf(oneNameOf(file)))) throw LedgerRefusal(inUse);
}

LedgerDatabase::LedgerDatabase(fs::path file, LedgerForm const& form)
    : file_(std::move(file))
    , form_(form) {}

LedgerDatabase::~LedgerDatabase() = default;

void LedgerDatabase::lock() {
    auto locked = FileLock::acquire(lockOf(file_));
    if (!locked) throw LedgerRefusal("the store cannot be locked: " + locked.error().message);
    lock_ = *std::move(locked);
    if (!lock_) throw LedgerRefusal(inUse);
}

/// Judges what is there before the database library may touch it, and makes room for a new ledger.
void LedgerDatabase::prepare() const {
    LedgerImage image{file_, form_};
    if (!image.isNew() && image.isBroken()) {
        auto const kept = setLedgerAside(file_);
        logWarning(file_.string() + ": the store was broken; it was kept as " + kept.string());
    } else if (image.hasLostChanges()) {
        auto const kept = copyLedger(file_);
        logWarning(file_.string() +
                   ": the log of the store was damaged; changes behind the damage are lost "
                   "here, and kept in " +
                   kept.string());
    }
    admit();
}

/// Makes sure that there is a file that can serve, for its owner alone.
void LedgerDatabase::admit() const {
    auto const identity = fileIdentity(file_);
    if (!identity) {
        auto const created = createPrivateFile(file_);
        if (!created) throw LedgerRefusal("the store cannot be created: " + created.error().message);
        return;
    }
    if (identity->names > 1)
        throw LedgerRefusal("the file has a second name (a hard link), by which others could change it");
    if (!isWritable(file_)) throw LedgerRefusal("the store is read-only");
    std::error_code failure;
    fs::permissions(file_, fs::perms::owner_read | fs::perms::owner_write, failure);
    if (failure) throw LedgerRefusal("the store cannot be closed to others: " + failure.message());
}

void LedgerDatabase::connect() {
    connection_.reset(); // of an attempt that failed
    connection_ = std::make_unique<SQLite::Database>(file_.empty() ? ":memory:" : file_.string(),
                                                     SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    if (sqlite3_db_readonly(connection_->getHandle(), "main") == 1)
        throw LedgerRefusal("the store is read-only");
    applyDefensiveSettings(*connection_);
    applyDurableSettings(*connection_);
    takeOver();
    if (!file_.empty()) remember();
}

/// Locks the file for as long as it is open.
void LedgerDatabase::takeOver() const {
    SQLite::Transaction transaction{*connection_, SQLite::TransactionBehavior::EXCLUSIVE};
    if (isEmpty(*connection_)) createSchema(*connection_, form_);
    transaction.commit();
}

void LedgerDatabase::remember() {
    connection_->exec("PRAGMA journal_mode = WAL; BEGIN IMMEDIATE; COMMIT");
    emptyLog();
    identity_ = fileIdentity(file_).value_or(FileIdentity{});
    logIdentity_ = fileIdentity(logOf(file_)).value_or(FileIdentity{});
    requireFile();
}

void LedgerDatabase::requireFile() const {
    if (file_.empty()) return;
    bool const isThere = identity_.names == 1 && fileIdentity(file_) == identity_ &&
                         fileIdentity(logOf(file_)) == logIdentity_;
    if (!isThere)
        throw LedgerRefusal(
            "the file of the store, or its log, was removed, replaced or linked while in use");
}

/// Moves every commit from the log to the file; nothing else is left in the log.
void LedgerDatabase::emptyLog() {
    require(sqlite3_wal_checkpoint_v2(connection_->getHandle(), "main", SQLITE_CHECKPOINT_TRUNCATE, nullptr,
                                      nullptr));
    synchronizeLog(); // the library leaves the shorter length to the system's own time
}

void LedgerDatabase::synchronizeLog() const {
    sqlite3_file* log = nullptr;
    require(sqlite3_file_control(connection_->getHandle(), "main", SQLITE_FCNTL_JOURNAL_POINTER,
                                 static_cast<void*>(&log)));
    if (log && log->pMethods) require(log->pMethods->xSync(log, SQLITE_SYNC_FULL));
}

/// Whether the next process would see what this one sees.
bool LedgerDatabase::isAsOnDisk() const {
    sqlite3_int64 size = 0;
    std::unique_ptr<unsigned char, decltype(&sqlite3_free)> const bytes{
        sqlite3_serialize(connection_->getHandle(), "main", &size, 0), sqlite3_free};
    return bytes && LedgerImage{file_, form_}.shows(
                        {reinterpret_cast<char const*>(bytes.get()), static_cast<std::size_t>(size)});
}

void LedgerDatabase::forgetFailedCommit() {
    if (file_.empty()) return;
    try {
        emptyLog();
    } catch (SQLite::Exception const&) {
        // On a full disk the log cannot be emptied, but it does not hold the commit either.
        if (!isAsOnDisk()) throw;
        synchronizeLog();
    }
}

Result<std::unique_ptr<LedgerDatabase>> LedgerDatabase::open(fs::path const& file, LedgerForm const& form) {
    try {
        std::unique_ptr<LedgerDatabase> ledger{
            new LedgerDatabase{file.empty() ? fs::path{} : oneNameOf(file), form}};
        if (!file.empty()) ledger->lock();
        for (int attempt = 1;; ++attempt) {
            try {
                if (!file.empty()) ledger->prepare();
                ledger->connect();
                return ledger;
            } catch (SQLite::Exception const& failure) {
                if (attempt == attempts || isInUse(failure)) throw;
            } catch (std::bad_alloc const&) {
                if (attempt == attempts) throw;
            }
        }
    } catch (std::exception const& failure) {
        return ledgerError(file, failure);
    }
}

} // namespace trelundo
