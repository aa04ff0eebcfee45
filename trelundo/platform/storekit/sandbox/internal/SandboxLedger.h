#pragma once

#include "trelundo/platform/foundation/Result.h"
#include "trelundo/platform/storekit/sandbox/internal/LedgerRecord.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace SQLite {
class Statement;
} // namespace SQLite

namespace trelundo {

class LedgerDatabase;

using LedgerRecords = std::vector<LedgerRecord>;

/// The sandbox store's durable record of transactions and of what is owned, in one SQLite file or in memory.
/// Every operation is one commit, complete on the disk when it returns; one that fails changes nothing,
/// unless isInDoubt() says otherwise, and its error names the file.
class SandboxLedger {
public:
    /// Opens or creates the file (empty: in memory) and holds it for itself until destroyed. A broken ledger
    /// is renamed and replaced by an empty one, with a warning. What is no ledger, cannot be read or written
    /// or is in use is an error, and left untouched. New transactions count from `firstIdentifier`, or
    /// continue after the last one of the file.
    static Result<std::unique_ptr<SandboxLedger>> open(std::filesystem::path const& file = {},
                                                       std::int64_t firstIdentifier = 1);
    /// The records of a file, oldest first, read without changing anything. A file that is not there, or that
    /// open() would not serve from, is an error.
    static Result<LedgerRecords> read(std::filesystem::path const& file);
    ~SandboxLedger();

    /// Whether a commit failed in such a way that it may come back with the next run. Every operation settles
    /// that first: it is undone for good, or the operation fails.
    bool isInDoubt() const { return isInDoubt_; }

    Result<LedgerRecord> recordPurchase(SKPayment::Fields const& payment, bool isRestorable);
    /// Moves a transaction on from `expected`. None: there is no such transaction in that state.
    Result<std::optional<LedgerRecord>> settle(std::int64_t identifier, LedgerState expected,
                                               LedgerOutcome const& outcome);
    /// A stranger, or a transaction that is finished or not over yet, is an error.
    Result<void> finish(std::int64_t identifier);
    /// One restored transaction for everything owned; those still unfinished from earlier are used again, and
    /// finished ones are forgotten.
    Result<LedgerRecords> restore(double date);
    /// Completes the purchases that were held back.
    Result<LedgerRecords> resume(double date);
    /// Forgets every transaction and everything owned.
    Result<void> clear();

    Result<LedgerRecords> records() const; // all, oldest first
    Result<LedgerRecords> unfinished() const;
    /// Whether a transaction other than `except` has used the nonce of an offer, in upper or lower case. A
    /// failed one has not.
    Result<bool> hasNonce(std::string const& nonce, std::int64_t except) const;

private:
    struct Statements;

    SandboxLedger(std::filesystem::path file, std::unique_ptr<LedgerDatabase> database,
                  std::int64_t firstIdentifier);

    template <class Work> std::invoke_result_t<Work> commit(Work const& work);
    void settleDoubt();
    void undo();
    template <class... Values>
    SQLite::Statement& statement(std::string const& sql, Values const&... values) const;
    template <class... Values>
    LedgerRecords find(std::string const& condition, Values const&... values) const;
    template <class... Values>
    Result<LedgerRecords> select(std::string const& condition, Values const&... values) const;
    LedgerRecord add(LedgerRecord record);
    void save(LedgerRecord const& record);
    void own(LedgerRecord const& record);
    void prune();

    std::filesystem::path file_;
    std::unique_ptr<LedgerDatabase> database_;
    std::unique_ptr<Statements> statements_; // destroyed before the database
    std::int64_t nextIdentifier_;
    bool isInDoubt_ = false;
};

} // namespace trelundo
