#include "trelundo/platform/storekit/sandbox/internal/SandboxLedger.h"

#include "trelundo/platform/foundation/Log.h"
#include "trelundo/platform/storekit/sandbox/internal/LedgerDatabase.h"
#include "trelundo/platform/storekit/sandbox/internal/LedgerFailure.h"
#include "trelundo/platform/storekit/sandbox/internal/LedgerImage.h"
#include "trelundo/platform/storekit/sandbox/internal/LedgerTable.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Exception.h>
#include <SQLiteCpp/Statement.h>
#include <algorithm>
#include <exception>
#include <unordered_map>

namespace trelundo {

namespace {

using State = LedgerState;

constexpr int readAttempts = 3;

int number(State state) { return static_cast<int>(state); }

/// Reads again when the disk fails.
template <class Read> std::invoke_result_t<Read> withPatience(Read const& read) {
    for (int attempt = 1;; ++attempt) {
        try {
            return read();
        } catch (SQLite::Exception const&) {
            if (attempt == readAttempts) throw;
        }
    }
}

std::int64_t lastIdentifier(SQLite::Database& database) {
    return withPatience(
        [&] { return database.execAndGet("SELECT coalesce(max(id), 0) FROM transactions").getInt64(); });
}

LedgerRecords recordsOf(SQLite::Statement& query) {
    LedgerRecords found;
    while (query.executeStep()) found.push_back(readRecord(query));
    return found;
}

} // namespace

/// Prepared once each, by their text.
struct SandboxLedger::Statements {
    std::unordered_map<std::string, SQLite::Statement> prepared;
};

Result<std::unique_ptr<SandboxLedger>> SandboxLedger::open(std::filesystem::path const& file,
                                                           std::int64_t firstIdentifier) {
    auto database = LedgerDatabase::open(file, transactionLedger);
    if (!database) return database.error();
    try {
        return std::unique_ptr<SandboxLedger>{new SandboxLedger{file, *std::move(database), firstIdentifier}};
    } catch (std::exception const& failure) {
        return ledgerError(file, failure);
    }
}

SandboxLedger::SandboxLedger(std::filesystem::path file, std::unique_ptr<LedgerDatabase> database,
                             std::int64_t firstIdentifier)
    : file_(std::move(file))
    , database_(std::move(database))
    , statements_(std::make_unique<Statements>())
    , nextIdentifier_(std::max(firstIdentifier, lastIdentifier(database_->connection()) + 1)) {}

SandboxLedger::~SandboxLedger() = default;

// The database; what fails here throws

template <class... Values>
SQLite::Statement& SandboxLedger::statement(std::string const& sql, Values const&... values) const {
    auto& query = statements_->prepared.try_emplace(sql, database_->connection(), sql).first->second;
    query.tryReset(); // repeats the error of a use that failed
    query.clearBindings();
    int position = 0; // NOLINT(misc-const-correctness): there may be no values
    (query.bind(++position, values), ...);
    return query;
}

template <class... Values>
LedgerRecords SandboxLedger::find(std::string const& condition, Values const&... values) const {
    return recordsOf(statement(selectRecords + condition, values...));
}

LedgerRecord SandboxLedger::add(LedgerRecord record) {
    if (nextIdentifier_ >= identifierLimit) throw LedgerRefusal("no number is left for a transaction");
    record.identifier = nextIdentifier_++;
    save(record);
    return record;
}

void SandboxLedger::save(LedgerRecord const& record) {
    auto& query = statement(saveRecord);
    bindRecord(query, record);
    query.exec();
}

void SandboxLedger::own(LedgerRecord const& record) {
    if (!record.isRestorable) return;
    statement("INSERT INTO owned (product, original) VALUES (?, ?) ON CONFLICT DO NOTHING",
              record.payment.productIdentifier, record.identifier)
        .exec();
}

/// All of `work`, or nothing of it when it throws.
template <class Work> std::invoke_result_t<Work> SandboxLedger::commit(Work const& work) {
    auto const nextIdentifier = nextIdentifier_;
    try {
        settleDoubt();
        database_->requireFile();
        statement("BEGIN IMMEDIATE").exec();
        auto result = work();
        isInDoubt_ = true; // a commit that fails may be in the log all the same
        statement("COMMIT").exec();
        isInDoubt_ = false;
        return result;
    } catch (std::exception const& failure) {
        nextIdentifier_ = nextIdentifier;
        undo();
        return ledgerError(file_, failure);
    }
}

void SandboxLedger::settleDoubt() {
    if (!isInDoubt_) return;
    database_->forgetFailedCommit();
    isInDoubt_ = false;
}

void SandboxLedger::undo() {
    try {
        database_->connection().tryExec("ROLLBACK"); // fails when the database has rolled back itself
        settleDoubt();
    } catch (std::exception const&) {
        // The doubt remains; the failure that began it is the one to tell.
        return;
    }
}

// Records

template <class... Values>
Result<LedgerRecords> SandboxLedger::select(std::string const& condition, Values const&... values) const {
    try {
        return withPatience([&] { return find(condition, values...); });
    } catch (std::exception const& failure) {
        return ledgerError(file_, failure);
    }
}

Result<LedgerRecords> SandboxLedger::read(std::filesystem::path const& file) {
    try {
        if (!std::filesystem::exists(file)) throw LedgerRefusal("no such file");
        requireUnused(file);
        LedgerImage image{file, transactionLedger};
        if (image.isNew()) return LedgerRecords{};
        if (image.isBroken()) throw LedgerRefusal("the store is broken");
        if (image.hasLostChanges())
            logWarning(file.string() +
                       ": the log of the store is damaged; what is behind the damage is not read");
        SQLite::Statement query{image.database(), std::string{selectRecords} + "ORDER BY t.id"};
        return recordsOf(query);
    } catch (std::exception const& failure) {
        return ledgerError(file, failure);
    }
}

Result<LedgerRecords> SandboxLedger::records() const { return select("ORDER BY t.id"); }

Result<LedgerRecords> SandboxLedger::unfinished() const {
    return select("WHERE t.finished = 0 AND t.state <> ? ORDER BY t.id", number(State::held));
}

Result<bool> SandboxLedger::hasNonce(std::string const& nonce, std::int64_t except) const {
    auto const users = select("WHERE lower(t.offer_nonce) = lower(?) AND t.id <> ? AND t.state <> ? LIMIT 1",
                              nonce, except, number(State::failed));
    if (!users) return users.error();
    return !users->empty();
}

// Operations

Result<LedgerRecord> SandboxLedger::recordPurchase(SKPayment::Fields const& payment, bool isRestorable) {
    return commit(
        [&]() -> Result<LedgerRecord> { return add({.payment = payment, .isRestorable = isRestorable}); });
}

Result<std::optional<LedgerRecord>> SandboxLedger::settle(std::int64_t identifier, State expected,
                                                          LedgerOutcome const& outcome) {
    return commit([&]() -> Result<std::optional<LedgerRecord>> {
        auto const found =
            find("WHERE t.id = ? AND t.state = ? AND t.finished = 0", identifier, number(expected));
        if (found.empty()) return std::optional<LedgerRecord>{};
        auto record = found.front();
        record.state = outcome.state;
        record.error = outcome.error;
        bool const isPurchased = outcome.state == State::purchased;
        if (isPurchased) record.date = outcome.date;
        save(record);
        if (isPurchased) own(record);
        if (outcome.isInterrupted)
            add({.payment = record.payment, .state = State::held, .isRestorable = record.isRestorable});
        return std::optional{record};
    });
}

Result<void> SandboxLedger::finish(std::int64_t identifier) {
    return commit([&]() -> Result<void> {
        auto const count =
            statement("UPDATE transactions SET finished = 1 "
                      "WHERE id = ? AND finished = 0 AND state IN (?, ?, ?)",
                      identifier, number(State::purchased), number(State::failed), number(State::restored))
                .exec();
        if (count == 0) return Error{"transaction " + std::to_string(identifier) + " cannot be finished"};
        return {};
    });
}

/// Forgets the restored transactions that are finished. The last one stays, so that its number is not given
/// again.
void SandboxLedger::prune() {
    statement("DELETE FROM transactions WHERE state = ? AND finished = 1 "
              "AND id < (SELECT max(id) FROM transactions)",
              number(State::restored))
        .exec();
}

Result<LedgerRecords> SandboxLedger::restore(double date) {
    return commit([&]() -> Result<LedgerRecords> {
        prune();
        auto const missing =
            find("JOIN owned ON owned.original = t.id WHERE t.id NOT IN "
                 "(SELECT original FROM transactions WHERE state = ? AND finished = 0) ORDER BY t.id",
                 number(State::restored));
        for (auto const& owned : missing)
            add({.payment = owned.payment,
                 .state = State::restored,
                 .isRestorable = owned.isRestorable,
                 .date = date,
                 .original = owned.identifier});
        return find("WHERE t.state = ? AND t.finished = 0 ORDER BY t.original", number(State::restored));
    });
}

Result<LedgerRecords> SandboxLedger::resume(double date) {
    return commit([&]() -> Result<LedgerRecords> {
        auto held = find("WHERE t.state = ? ORDER BY t.id", number(State::held));
        for (auto& record : held) {
            record.state = State::purchased;
            record.date = date;
            save(record);
            own(record);
        }
        return held;
    });
}

Result<void> SandboxLedger::clear() {
    return commit([&]() -> Result<void> {
        statement("DELETE FROM owned").exec();
        statement("DELETE FROM transactions").exec();
        return {};
    });
}

} // namespace trelundo
