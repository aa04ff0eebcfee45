#pragma once

#include "trelundo/platform/foundation/Result.h"
#include "trelundo/platform/storekit/SKProduct.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace trelundo {

/// The catalogue and the settings of a StoreKit configuration file (`*.storekit`). It reads every published
/// version of the format by the keys that are there, never by the version number, and ignores unknown keys.
/// Keys that only newer store interfaces know (offer codes, win-back offers, billing plans, policies, renewal
/// rates) are skipped.
class StoreConfiguration {
public:
    enum class ProductKind : int {
        consumable,
        nonConsumable,
        nonRenewingSubscription,
        autoRenewableSubscription
    };

    struct Product {
        ProductKind kind = ProductKind::nonConsumable;
        Ref<SKProduct> product = nullptr;
        /// Whether a purchase comes back with a restore: non-consumables and auto-renewable subscriptions do.
        bool isRestorable() const;
    };

    struct Settings {
        std::string storefront = "USA"; // three-letter country code
        std::string locale = "en_US";   // which localisation is delivered
        bool asksToBuy = false;         // every purchase waits for approval
        bool failsTransactions = false;
        int transactionError = 0; // the code that they fail with
        bool failsLoadingProducts = false;
        bool failsRestoring = false; // a failing synchronisation with the store stands for a failing restore
    };

    struct Options {
        std::optional<std::string> locale = std::nullopt; // in place of the file's own
        bool givesZeroUnitPeriods = false; // non-subscriptions get a period of 0 days, as some systems report
    };

    /// Reads a file of at most 8 MB, or a folder that holds `Configuration.storekit`. The error names file,
    /// line or key, and the reason.
    static Result<StoreConfiguration> load(std::filesystem::path const& path, Options const& options);
    static Result<StoreConfiguration> load(std::filesystem::path const& path);
    /// `name` stands for the file in messages.
    static Result<StoreConfiguration> parse(std::string_view text, std::string const& name,
                                            Options const& options);
    static Result<StoreConfiguration> parse(std::string_view text, std::string const& name);

    /// In the order of the file, each identifier once.
    std::vector<Product> const& products() const { return products_; }
    /// Null when the file does not know `identifier`; matched exactly.
    Product const* find(std::string_view identifier) const;
    /// The identifiers of every auto-renewable subscription, in the order of the file.
    std::vector<std::string> subscriptionIdentifiers() const;
    Settings const& settings() const { return settings_; }
    /// What was left out or replaced, one sentence each, beginning with the file's name.
    std::vector<std::string> const& warnings() const { return warnings_; }

private:
    friend class StoreConfigurationReader;

    std::vector<Product> products_;
    std::map<std::string, std::size_t, std::less<>> positions_; // in products_, by identifier
    Settings settings_;
    std::vector<std::string> warnings_;
};

} // namespace trelundo
