#include "trelundo/platform/storekit/sandbox/internal/LedgerTable.h"

#include "trelundo/platform/storekit/SKError.h"

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Statement.h>

namespace trelundo {

namespace {

std::optional<std::string> readText(SQLite::Statement const& row, char const* column) {
    return row.isColumnNull(column) ? std::nullopt : std::optional{row.getColumn(column).getString()};
}

Ref<SKPaymentDiscount> readDiscount(SQLite::Statement const& row) {
    auto const offer = readText(row, "offer");
    if (!offer) return nullptr;
    return make<SKPaymentDiscount>(
        SKPaymentDiscount::Fields{.identifier = *offer,
                                  .keyIdentifier = row.getColumn("offer_key").getString(),
                                  .nonce = row.getColumn("offer_nonce").getString(),
                                  .signature = row.getColumn("offer_signature").getString(),
                                  .timestamp = row.getColumn("offer_time").getInt64()});
}

SKPayment::Fields readPayment(SQLite::Statement const& row) {
    return {.productIdentifier = row.getColumn("product").getString(),
            .quantity = row.getColumn("quantity").getInt(),
            .applicationUsername = readText(row, "username"),
            .simulatesAskToBuyInSandbox = row.getColumn("ask_to_buy").getInt() != 0,
            .paymentDiscount = readDiscount(row)};
}

Ref<NSError> readError(SQLite::Statement const& row) {
    auto const domain = readText(row, "error_domain");
    if (!domain) return nullptr;
    auto const code = row.getColumn("error_code").getInt();
    return *domain == SKErrorDomain ? makeStoreError(code) : make<NSError>(*domain, code);
}

void bindPayment(SQLite::Statement& query, SKPayment::Fields const& payment) {
    query.bind(":product", payment.productIdentifier);
    query.bind(":quantity", payment.quantity);
    if (payment.applicationUsername) query.bind(":username", *payment.applicationUsername);
    query.bind(":ask_to_buy", payment.simulatesAskToBuyInSandbox ? 1 : 0);
    if (auto const& discount = payment.paymentDiscount) {
        query.bind(":offer", discount->identifier());
        query.bind(":offer_key", discount->keyIdentifier());
        query.bind(":offer_nonce", discount->nonce());
        query.bind(":offer_signature", discount->signature());
        query.bind(":offer_time", discount->timestamp());
    }
}

} // namespace

LedgerRecord readRecord(SQLite::Statement const& row) {
    LedgerRecord record{.identifier = row.getColumn("id").getInt64(),
                        .payment = readPayment(row),
                        .state = static_cast<LedgerState>(row.getColumn("state").getInt()),
                        .isRestorable = row.getColumn("restorable").getInt() != 0,
                        .isFinished = row.getColumn("finished").getInt() != 0,
                        .error = readError(row)};
    if (!row.isColumnNull("date")) record.date = row.getColumn("date").getDouble();
    if (!row.isColumnNull("original")) record.original = row.getColumn("original").getInt64();
    record.originalDate = row.getColumn("original_date").getDouble();
    return record;
}

void bindRecord(SQLite::Statement& query, LedgerRecord const& record) {
    query.bind(":id", record.identifier);
    bindPayment(query, record.payment);
    query.bind(":state", static_cast<int>(record.state));
    query.bind(":restorable", record.isRestorable ? 1 : 0);
    query.bind(":finished", record.isFinished ? 1 : 0);
    if (record.error) {
        query.bind(":error_domain", record.error->domain());
        query.bind(":error_code", record.error->code());
    }
    if (record.date) query.bind(":date", *record.date);
    if (record.original) query.bind(":original", *record.original);
}

} // namespace trelundo
