#pragma once

#include "trelundo/platform/foundation/internal/FileIdentity.h"
#include "trelundo/platform/foundation/internal/FileLock.h"

#include <memory>

namespace SQLite {
class Database;
} // namespace SQLite

namespace trelundo {

/// Throws a LedgerRefusal while somebody holds the ledger in `file`.
void requireUnused(std::filesystem::path const& file);

/// The database of a ledger, in a file that it holds until it is destroyed, or in memory.
class LedgerDatabase {
public:
    /// Opens or creates `file` (empty: in memory). A broken ledger is set aside, and what stands behind
    /// damage in a log is copied, each with a warning. Reads that fail are tried again. What cannot serve is
    /// an error, and left untouched.
    static Result<std::unique_ptr<LedgerDatabase>> open(std::filesystem::path const& file);
    ~LedgerDatabase();
    LedgerDatabase(LedgerDatabase const&) = delete;
    LedgerDatabase& operator=(LedgerDatabase const&) = delete;

    SQLite::Database& connection() const { return *connection_; }
    /// Throws a LedgerRefusal when the name leads to another file by now, or to none, so that a commit would
    /// not be found again.
    void requireFile() const;
    /// Makes sure that a commit that failed is gone for good, whatever it may have written to the log. Throws
    /// when that cannot be achieved.
    void forgetFailedCommit();

private:
    /// `file` is empty, or absolute and without symbolic links.
    explicit LedgerDatabase(std::filesystem::path file);
    void lock();
    void prepare() const;
    void admit() const;
    void connect();
    void takeOver() const;
    void remember();
    void emptyLog();
    void synchronizeLog() const;
    bool isAsOnDisk() const;

    std::filesystem::path file_;
    std::unique_ptr<FileLock> lock_;
    std::unique_ptr<SQLite::Database> connection_;
    FileIdentity identity_, logIdentity_;
};

} // namespace trelundo
