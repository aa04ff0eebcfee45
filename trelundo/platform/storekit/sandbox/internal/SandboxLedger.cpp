#include "trelundo/platform/storekit/sandbox/internal/SandboxLedger.h"

#include "trelundo/platform/storekit/SKError.h"
#include "trelundo/platform/storekit/sandbox/internal/SandboxLedgerDatabase.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <exception>
#include <unordered_map>

namespace trelundo {

namespace {

using State = LedgerState;

#define SELECT_RECORDS                                                                                       \
    "SELECT t.id, t.product, t.quantity, t.username, t.ask_to_buy, t.offer, t.offer_key, t.offer_nonce, "    \
    "t.offer_signature, t.offer_time, t.state, t.restorable, t.finished, t.error_domain, t.error_code, "     \
    "t.date, t.original, o.date FROM transactions t LEFT JOIN transactions o ON o.id = t.original "

Ref<SKPaymentDiscount> readDiscount(SQLite::Statement const& row) {
    if (row.isColumnNull(5)) return nullptr;
    return make<SKPaymentDiscount>(SKPaymentDiscount::Fields{.identifier = row.getColumn(5).getString(),
                                                             .keyIdentifier = row.getColumn(6).getString(),
                                                             .nonce = row.getColumn(7).getString(),
                                                             .signature = row.getColumn(8).getString(),
                                                             .timestamp = row.getColumn(9).getInt64()});
}

Ref<NSError> readError(SQLite::Statement const& row) {
    if (row.isColumnNull(13)) return nullptr;
    auto const domain = row.getColumn(13).getString();
    auto const code = row.getColumn(14).getInt();
    return domain == SKErrorDomain ? makeStoreError(code) : make<NSError>(domain, code);
}

LedgerRecord readRecord(SQLite::Statement const& row) {
    LedgerRecord record{.identifier = row.getColumn(0).getInt64(),
                        .state = static_cast<State>(row.getColumn(10).getInt()),
                        .isRestorable = row.getColumn(11).getInt() != 0,
                        .isFinished = row.getColumn(12).getInt() != 0,
                        .error = readError(row)};
    record.payment = {.productIdentifier = row.getColumn(1).getString(),
                      .quantity = row.getColumn(2).getInt(),
                      .simulatesAskToBuyInSandbox = row.getColumn(4).getInt() != 0,
                      .paymentDiscount = readDiscount(row)};
    if (!row.isColumnNull(3)) record.payment.applicationUsername = row.getColumn(3).getString();
    if (!row.isColumnNull(15)) record.date = row.getColumn(15).getDouble();
    if (!row.isColumnNull(16)) record.original = row.getColumn(16).getInt64();
    record.originalDate = row.getColumn(17).getDouble();
    return record;
}

void bindPayment(SQLite::Statement& query, SKPayment::Fields const& payment) {
    query.bind(2, payment.productIdentifier);
    query.bind(3, payment.quantity);
    if (payment.applicationUsername) query.bind(4, *payment.applicationUsername);
    query.bind(5, payment.simulatesAskToBuyInSandbox ? 1 : 0);
    if (auto const& discount = payment.paymentDiscount) {
        query.bind(6, discount->identifier());
        query.bind(7, discount->keyIdentifier());
        query.bind(8, discount->nonce());
        query.bind(9, discount->signature());
        query.bind(10, discount->timestamp());
    }
}

} // namespace

/// Prepared once each, by the address of their text.
struct SandboxLedger::Statements {
    std::unordered_map<char const*, SQLite::Statement> prepared;
};

SandboxLedger::SandboxLedger(Options options)
    : options_(std::move(options))
    , statements_(std::make_unique<Statements>()) {}

SandboxLedger::~SandboxLedger() = default;

SQLite::Statement& SandboxLedger::statement(char const* sql) const {
    auto& query = statements_->prepared.try_emplace(sql, *database_, sql).first->second;
    query.tryReset(); // repeats the error of a use that failed
    query.clearBindings();
    return query;
}

void SandboxLedger::step(std::string_view operation, char const* moment) const {
    if (options_.stepHook) options_.stepHook(std::string{operation} + "." + moment);
}

bool SandboxLedger::commit(std::string_view operation, std::function<void()> const& work) {
    step(operation, "begin");
    try {
        statement("BEGIN IMMEDIATE").exec();
        work();
        step(operation, "written");
        statement("COMMIT").exec();
    } catch (std::exception const& failure) {
        database_->tryExec("ROLLBACK"); // fails when the database has rolled back itself
        lastError_ = describeDatabaseFailure(options_.file, failure);
        return false;
    }
    step(operation, "committed");
    return true;
}

// Records

std::vector<LedgerRecord> SandboxLedger::select(char const* sql, std::int64_t argument) const {
    std::vector<LedgerRecord> found;
    try {
        auto& query = statement(sql);
        if (query.getBindParameterCount() > 0) query.bind(1, argument);
        while (query.executeStep()) found.push_back(readRecord(query));
    } catch (std::exception const& failure) {
        lastError_ = describeDatabaseFailure(options_.file, failure);
    }
    return found;
}

std::vector<LedgerRecord> SandboxLedger::records() const { return select(SELECT_RECORDS "ORDER BY t.id", 0); }

std::vector<LedgerRecord> SandboxLedger::unfinished() const {
    return select(SELECT_RECORDS "WHERE t.finished = 0 AND t.state <> ?1 ORDER BY t.id",
                  static_cast<int>(State::held));
}

std::optional<LedgerRecord> SandboxLedger::find(std::int64_t identifier) const {
    auto const found = select(SELECT_RECORDS "WHERE t.id = ?1", identifier);
    return found.empty() ? std::nullopt : std::optional{found.front()};
}

// Operations

std::optional<LedgerRecord> SandboxLedger::recordPurchase(SKPayment::Fields const& payment,
                                                          bool isRestorable) {
    LedgerRecord record{.identifier = nextIdentifier_, .payment = payment, .isRestorable = isRestorable};
    bool const isRecorded = commit("purchase", [&] {
        auto& query =
            statement("INSERT INTO transactions (id, product, quantity, username, ask_to_buy, offer, "
                      "offer_key, offer_nonce, offer_signature, offer_time, state, restorable, finished) "
                      "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, 0, ?, 0)");
        query.bind(1, record.identifier);
        bindPayment(query, payment);
        query.bind(11, isRestorable ? 1 : 0);
        query.exec();
    });
    if (!isRecorded) return std::nullopt;
    ++nextIdentifier_;
    return record;
}

bool SandboxLedger::settle(std::string_view operation, std::int64_t identifier, State expected,
                           LedgerOutcome const& outcome) {
    bool isSettled = false;
    bool const isCommitted = commit(operation, [&] {
        auto& query =
            statement("UPDATE transactions SET state = ?, error_domain = ?, error_code = ?, date = ? "
                      "WHERE id = ? AND state = ? AND finished = 0");
        query.bind(1, static_cast<int>(outcome.state));
        if (outcome.error) query.bind(2, outcome.error->domain());
        if (outcome.error) query.bind(3, outcome.error->code());
        if (outcome.state == State::purchased) query.bind(4, outcome.date);
        query.bind(5, identifier);
        query.bind(6, static_cast<int>(expected));
        isSettled = query.exec() == 1;
        if (!isSettled) return;
        if (outcome.state == State::purchased) own(identifier);
        if (outcome.isInterrupted) insertCopy(identifier, State::held, std::nullopt);
    });
    if (isCommitted && !isSettled)
        lastError_ = "transaction " + std::to_string(identifier) + " is not waiting";
    return isCommitted && isSettled;
}

bool SandboxLedger::finish(std::int64_t identifier) {
    bool isFinished = false;
    bool const isCommitted = commit("finish", [&] {
        auto& query = statement("UPDATE transactions SET finished = 1 "
                                "WHERE id = ? AND finished = 0 AND state IN (1, 2, 3)");
        query.bind(1, identifier);
        isFinished = query.exec() == 1;
    });
    return isCommitted && isFinished;
}

std::optional<std::vector<LedgerRecord>> SandboxLedger::restore(double date) {
    bool const isRestored = commit("restore", [&] {
        auto& query =
            statement("SELECT original FROM owned WHERE original NOT IN (SELECT original FROM transactions "
                      "WHERE state = 3 AND finished = 0) ORDER BY original");
        std::vector<std::int64_t> originals;
        while (query.executeStep()) originals.push_back(query.getColumn(0).getInt64());
        for (auto const original : originals) {
            auto const restored = insertCopy(original, State::restored, date);
            auto& link = statement("UPDATE transactions SET original = ? WHERE id = ?");
            link.bind(1, original);
            link.bind(2, restored);
            link.exec();
        }
    });
    if (!isRestored) return std::nullopt;
    return select(SELECT_RECORDS "WHERE t.finished = 0 AND t.state = ?1 ORDER BY t.original",
                  static_cast<int>(State::restored));
}

std::optional<std::vector<LedgerRecord>> SandboxLedger::resume(double date) {
    auto held = select(SELECT_RECORDS "WHERE t.state = ?1 ORDER BY t.id", static_cast<int>(State::held));
    bool const isResumed = commit("resume", [&] {
        for (auto& record : held) {
            auto& query = statement("UPDATE transactions SET state = 1, date = ? WHERE id = ?");
            query.bind(1, date);
            query.bind(2, record.identifier);
            query.exec();
            own(record.identifier);
            record.state = State::purchased;
            record.date = date;
        }
    });
    return isResumed ? std::optional{std::move(held)} : std::nullopt;
}

bool SandboxLedger::clear() {
    return commit("clear", [&] {
        statement("DELETE FROM owned").exec();
        statement("DELETE FROM transactions").exec();
    });
}

std::int64_t SandboxLedger::insertCopy(std::int64_t source, State state, std::optional<double> date) {
    auto& query =
        statement("INSERT INTO transactions (id, product, quantity, username, ask_to_buy, offer, offer_key, "
                  "offer_nonce, offer_signature, offer_time, state, restorable, finished, date) "
                  "SELECT ?1, product, quantity, username, ask_to_buy, offer, offer_key, offer_nonce, "
                  "offer_signature, offer_time, ?2, restorable, 0, ?3 FROM transactions WHERE id = ?4");
    query.bind(1, nextIdentifier_);
    query.bind(2, static_cast<int>(state));
    if (date) query.bind(3, *date);
    query.bind(4, source);
    query.exec();
    return nextIdentifier_++;
}

void SandboxLedger::own(std::int64_t identifier) {
    auto& query = statement("INSERT INTO owned (product, original) SELECT product, id FROM transactions "
                            "WHERE id = ? AND restorable = 1 ON CONFLICT DO NOTHING");
    query.bind(1, identifier);
    query.exec();
}

#undef SELECT_RECORDS

} // namespace trelundo
