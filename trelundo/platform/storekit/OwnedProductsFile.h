#pragma once

#include "trelundo/platform/foundation/Result.h"
#include "trelundo/platform/storekit/SKProduct.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace trelundo {

class LedgerDatabase;

/// What a store has said of one product that the user owns or waits for.
struct OwnedProduct {
    /// For how long a purchase serves.
    enum class Term : int {
        unknown = 0,      // the catalogue has not told yet
        lifetime = 1,     // no subscription
        subscription = 2, // for `period` from `date` on; absent: the store has not said until when
    };

    std::string productIdentifier;
    /// For approval; nothing else is known then.
    bool isWaiting = false;
    std::string transactionIdentifier = {};    // empty: the store gave none
    std::string originalIdentifier = {};       // of the first purchase; empty: this is it
    std::optional<double> date = std::nullopt; // seconds since 2001-01-01 00:00 UTC
    bool wasRestored = false;
    Term term = Term::unknown;
    std::optional<SKProductSubscriptionPeriod> period = std::nullopt;
    std::string receipt = {}; // opaque bytes; empty: none

    bool operator==(OwnedProduct const&) const = default;
};

/// Owned products in an SQLite file, one record each. What was saved is on disk before the call returns. One
/// process at a time.
class OwnedProductsFile {
public:
    /// Opens or creates the file, readable by its owner alone; empty: kept in memory. A broken file is
    /// renamed and replaced with a warning. The error names the file.
    static Result<std::unique_ptr<OwnedProductsFile>> open(std::filesystem::path const& file);
    ~OwnedProductsFile();

    /// Every record, by product.
    Result<std::vector<OwnedProduct>> read() const;
    /// Adds the record of a product, or replaces it.
    Result<void> save(OwnedProduct const& product);
    /// Removing what is not there does nothing.
    Result<void> remove(std::string const& productIdentifier);

private:
    OwnedProductsFile(std::filesystem::path file, std::unique_ptr<LedgerDatabase> database);

    std::filesystem::path file_;
    std::unique_ptr<LedgerDatabase> database_;
};

} // namespace trelundo
