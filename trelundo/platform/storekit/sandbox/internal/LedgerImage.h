#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace SQLite {
class Database;
} // namespace SQLite

namespace trelundo {

/// What tells a ledger's file from another application's.
inline constexpr std::uint32_t ledgerApplicationIdentifier = 0x54524c53; // "TRLS"
inline constexpr std::uint32_t ledgerSchemaVersion = 1;

/// What a ledger's file says together with the log beside it, in memory. Making one changes nothing on the
/// disk, and neither does asking it.
class LedgerImage {
public:
    /// Throws a LedgerRefusal for what is not a file, too large or in the middle of another program's change,
    /// and a SQLite::Exception when something cannot be read.
    explicit LedgerImage(std::filesystem::path const& file);

    /// Whether there is nothing yet: no file, an empty one, or one whose creation was cut short.
    bool isNew() const { return bytes_.empty() && !isTornFromLog_; }
    /// Whether a ledger is damaged so that it cannot serve. What is no ledger, or one of another version or
    /// schema, throws a LedgerRefusal.
    bool isBroken();
    /// Whether the log holds changes behind damage, which a reader does not see.
    bool hasLostChanges() const { return hasLostChanges_; }
    /// Whether a reader of the disk sees `bytes`, a database with a log as the library writes it out.
    bool shows(std::string_view bytes) const;
    /// To read only, and no longer than the image lives. None for a new one.
    SQLite::Database& database();

    LedgerImage(LedgerImage const&) = delete;
    LedgerImage& operator=(LedgerImage const&) = delete;
    ~LedgerImage();

private:
    void applyJournal(std::string_view journal);
    void applyLog(std::string_view log);
    void requireOwnHeader() const;
    void requireSchema();

    std::string bytes_;
    bool isTornFromLog_ = false; // the file is empty or gone, its log is not
    bool hasLostChanges_ = false;
    std::unique_ptr<SQLite::Database> database_; // reads bytes_
};

} // namespace trelundo
