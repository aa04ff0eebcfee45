#pragma once

#include "trelundo/platform/storekit/sandbox/internal/LedgerRecord.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace SQLite {
class Database;
class Statement;
} // namespace SQLite

namespace trelundo {

/// The sandbox store's durable record of transactions and of what is owned, in one SQLite file or in memory.
/// Every operation is one commit, complete on the disk when it returns; one that fails changes nothing and
/// explains itself in lastError().
class SandboxLedger {
public:
    /// Called with the name of every step around a commit, such as `purchase.written`; a test may end the
    /// process there.
    using StepHook = std::function<void(std::string_view)>;

    struct Options {
        std::filesystem::path file = {}; // empty: in memory
        std::int64_t firstIdentifier = 1;
        StepHook stepHook = nullptr;
    };
    struct Opened {
        std::unique_ptr<SandboxLedger> ledger = nullptr;
        std::string error = {};    // names the file and the reason when there is no ledger
        std::string setAside = {}; // where a broken file went
    };
    /// Opens or creates the file and holds it for itself until destroyed. A broken file is renamed and
    /// replaced by an empty one. One that belongs to something else, cannot be written or is in use is an
    /// error, and left untouched.
    static Opened open(Options options);
    ~SandboxLedger();

    std::optional<LedgerRecord> recordPurchase(SKPayment::Fields const& payment, bool isRestorable);
    /// Moves a transaction on from `expected`; false also when it is not in that state. `operation` names the
    /// steps.
    bool settle(std::string_view operation, std::int64_t identifier, LedgerState expected,
                LedgerOutcome const& outcome);
    bool finish(std::int64_t identifier);
    /// One restored transaction for everything owned; those still unfinished from earlier are used again.
    std::optional<std::vector<LedgerRecord>> restore(double date);
    /// Completes the purchases that were held back.
    std::optional<std::vector<LedgerRecord>> resume(double date);
    bool clear();

    std::vector<LedgerRecord> records() const; // all, oldest first
    std::vector<LedgerRecord> unfinished() const;
    std::optional<LedgerRecord> find(std::int64_t identifier) const;
    std::string const& lastError() const { return lastError_; }
    /// Calls the hook, for the steps outside a commit.
    void step(std::string_view operation, char const* moment) const;

private:
    explicit SandboxLedger(Options options);

    static Opened attempt(Options const& options, bool& isFileBroken);
    void openDatabase();
    void takeOver();
    bool isNew() const;
    void createSchema();
    void requireOwnSchema() const;
    void requireSoundness() const;

    bool commit(std::string_view operation, std::function<void()> const& work);
    SQLite::Statement& statement(char const* sql) const;
    std::vector<LedgerRecord> select(char const* sql, std::int64_t argument) const;
    std::int64_t insertCopy(std::int64_t source, LedgerState state, std::optional<double> date);
    void own(std::int64_t identifier);

    struct Statements;
    Options options_;
    std::unique_ptr<SQLite::Database> database_;
    std::unique_ptr<Statements> statements_; // destroyed before the database
    std::int64_t nextIdentifier_ = 1;
    mutable std::string lastError_;
};

} // namespace trelundo
