#pragma once

#include "trelundo/platform/storekit/sandbox/internal/LedgerRecord.h"

namespace SQLite {
class Statement;
} // namespace SQLite

namespace trelundo {

// What a ledger's file looks like. Nothing else knows the columns of a transaction by name.

/// Identifiers are less than this.
inline constexpr std::int64_t identifierLimit = 9'000'000'000'000'000;

inline constexpr char const* ledgerSchema = R"sql(
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

/// The rows `t` that readRecord() reads; conditions follow.
inline constexpr char const* selectRecords =
    "SELECT t.*, o.date AS original_date FROM transactions t LEFT JOIN transactions o ON o.id = t.original ";
LedgerRecord readRecord(SQLite::Statement const& row);

/// Adds a record that bindRecord() has bound, or brings one of the same identifier up to date.
inline constexpr char const* saveRecord =
    "INSERT INTO transactions VALUES (:id, :product, :quantity, :username, :ask_to_buy, :offer, :offer_key, "
    ":offer_nonce, :offer_signature, :offer_time, :state, :restorable, :finished, :error_domain, "
    ":error_code, :date, :original) ON CONFLICT (id) DO UPDATE SET state = excluded.state, "
    "error_domain = excluded.error_domain, error_code = excluded.error_code, date = excluded.date";
void bindRecord(SQLite::Statement& query, LedgerRecord const& record);

} // namespace trelundo
