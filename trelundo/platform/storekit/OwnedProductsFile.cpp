#include "trelundo/platform/storekit/OwnedProductsFile.h"

#include "trelundo/platform/storekit/sandbox/internal/LedgerDatabase.h"
#include "trelundo/platform/storekit/sandbox/internal/LedgerFailure.h"

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <utility>

namespace trelundo {

namespace {

constexpr LedgerForm ownedProducts{.applicationIdentifier = 0x54524f50, // "TROP"
                                   .version = 1,
                                   .schema = R"sql(
CREATE TABLE owned_products (
    product TEXT PRIMARY KEY,
    waiting INTEGER NOT NULL CHECK (waiting IN (0, 1)),
    identifier TEXT NOT NULL,
    original TEXT NOT NULL,
    date REAL,
    restored INTEGER NOT NULL CHECK (restored IN (0, 1)),
    term INTEGER NOT NULL CHECK (term BETWEEN 0 AND 2),
    units INTEGER,
    unit INTEGER CHECK (unit BETWEEN 0 AND 3),
    receipt BLOB NOT NULL
) STRICT, WITHOUT ROWID;
)sql"};

constexpr char const* saveProduct =
    "INSERT OR REPLACE INTO owned_products VALUES (:product, :waiting, :identifier, :original, :date, "
    ":restored, :term, :units, :unit, :receipt)";

OwnedProduct readProduct(SQLite::Statement const& row) {
    OwnedProduct product{.productIdentifier = row.getColumn("product").getString(),
                         .isWaiting = row.getColumn("waiting").getInt() != 0,
                         .transactionIdentifier = row.getColumn("identifier").getString(),
                         .originalIdentifier = row.getColumn("original").getString(),
                         .wasRestored = row.getColumn("restored").getInt() != 0,
                         .term = static_cast<OwnedProduct::Term>(row.getColumn("term").getInt()),
                         .receipt = row.getColumn("receipt").getString()};
    if (!row.isColumnNull("date")) product.date = row.getColumn("date").getDouble();
    if (!row.isColumnNull("units"))
        product.period = {row.getColumn("units").getInt(),
                          static_cast<SKProductPeriodUnit>(row.getColumn("unit").getInt())};
    return product;
}

void bindProduct(SQLite::Statement& query, OwnedProduct const& product) {
    query.bind(":product", product.productIdentifier);
    query.bind(":waiting", product.isWaiting ? 1 : 0);
    query.bind(":identifier", product.transactionIdentifier);
    query.bind(":original", product.originalIdentifier);
    if (product.date) query.bind(":date", *product.date);
    query.bind(":restored", product.wasRestored ? 1 : 0);
    query.bind(":term", static_cast<int>(product.term));
    if (product.period) {
        query.bind(":units", product.period->numberOfUnits);
        query.bind(":unit", static_cast<int>(product.period->unit));
    }
    query.bind(":receipt", product.receipt.data(), static_cast<int>(product.receipt.size()));
}

} // namespace

OwnedProductsFile::OwnedProductsFile(std::filesystem::path file, std::unique_ptr<LedgerDatabase> database)
    : file_(std::move(file))
    , database_(std::move(database)) {}

OwnedProductsFile::~OwnedProductsFile() = default;

Result<std::unique_ptr<OwnedProductsFile>> OwnedProductsFile::open(std::filesystem::path const& file) {
    auto database = LedgerDatabase::open(file, ownedProducts);
    if (!database) return database.error();
    return std::unique_ptr<OwnedProductsFile>{new OwnedProductsFile{file, *std::move(database)}};
}

Result<std::vector<OwnedProduct>> OwnedProductsFile::read() const {
    try {
        SQLite::Statement query{database_->connection(), "SELECT * FROM owned_products ORDER BY product"};
        std::vector<OwnedProduct> products;
        while (query.executeStep()) products.push_back(readProduct(query));
        return products;
    } catch (std::exception const& failure) {
        return ledgerError(file_, failure);
    }
}

Result<void> OwnedProductsFile::save(OwnedProduct const& product) {
    try {
        database_->requireFile();
        SQLite::Statement query{database_->connection(), saveProduct};
        bindProduct(query, product);
        query.exec();
        return {};
    } catch (std::exception const& failure) {
        return ledgerError(file_, failure);
    }
}

Result<void> OwnedProductsFile::remove(std::string const& productIdentifier) {
    try {
        database_->requireFile();
        SQLite::Statement query{database_->connection(),
                                "DELETE FROM owned_products WHERE product = :product"};
        query.bind(":product", productIdentifier);
        query.exec();
        return {};
    } catch (std::exception const& failure) {
        return ledgerError(file_, failure);
    }
}

} // namespace trelundo
