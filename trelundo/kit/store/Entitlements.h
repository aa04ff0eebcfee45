#pragma once

#include "trelundo/kit/store/Products.h"
#include "trelundo/platform/storekit/OwnedProductsFile.h"
#include "trelundo/platform/storekit/SKPaymentTransaction.h"

#include <functional>
#include <map>

namespace trelundo {

/// What the store's transactions say of one product.
struct Entitlement {
    enum class Standing : int {
        waiting = 0,      // for approval
        owned = 1,        // for good, or until `until`
        ownedSoFar = 2,   // the store has not said until when: see Entitlements
        periodIsOver = 3, // and no renewal was heard of
    };

    std::string productIdentifier;
    Standing standing;
    /// End of the period that was paid for, seconds since 2001-01-01 00:00 UTC; absent: for good, or not
    /// known, as `standing` tells.
    std::optional<double> until = std::nullopt;
    std::string transactionIdentifier = {};         // empty while waiting
    std::string originalTransactionIdentifier = {}; // empty: the transaction is the first one
    std::string receipt = {};                       // opaque bytes for a server; empty: none
};

/// What this user owns, kept in a file of the host's choice. Open it at start-up and hand it to
/// PremiumManager::setEntitlements() before the main queue first runs: from then on each transaction is on
/// disk before it is finished, whenever it comes, so that a kill at any moment loses nothing.
///
/// It knows what transactions say, and no more. It does not hear of refunds, of a subscription that was
/// cancelled, or of renewals before their transactions come. Until when a subscription lasts follows from the
/// product's period; it is not known for a restored one (the store gives those back that have ended, too),
/// for one bought with a discount or with an introductory price on offer (the first period may be another
/// one), nor before the catalogue was loaded. What is consumed after its purchase counts as owned. A server
/// that checks the receipt knows better. Main thread only.
class Entitlements : public NSObject {
public:
    /// Opens or creates `file`; empty: kept in memory only. The error names the file.
    static Result<Ref<Entitlements>> open(std::filesystem::path const& file);
    /// What open() makes of a file and its records.
    Entitlements(std::unique_ptr<OwnedProductsFile> file, std::vector<OwnedProduct> const& products);

    /// Whether the product may be used now, as far as is known: owned, or owned so far.
    bool owns(std::string const& productIdentifier) const;
    /// None when nothing was heard of the product.
    std::optional<Entitlement> find(std::string const& productIdentifier) const;
    /// All that was heard of, by product.
    std::vector<Entitlement> all() const;
    /// Called on a later turn of the main queue after any change; null: not called. A period that ends is no
    /// change: ask again.
    void setChangeHandler(std::function<void()> handler) { changeHandler_ = std::move(handler); }

    /// For PremiumManager. Whether all that `transaction` says is on disk; if not, the reason is in the log.
    /// `product` is what the catalogue has for it; null: not known yet.
    bool record(SKPaymentTransaction const& transaction, SKProduct const* product);
    /// For PremiumManager: the catalogue was loaded and tells the terms of what was bought before.
    void learnTerms(Products const& products);

private:
    OwnedProduct const* known(std::string const& productIdentifier) const;
    bool isNews(OwnedProduct const& product) const;
    bool save(OwnedProduct product);
    bool forgetWaiting(std::string const& productIdentifier);
    void didChange();

    std::unique_ptr<OwnedProductsFile> file_;
    std::map<std::string, OwnedProduct> products_; // as in the file
    std::function<void()> changeHandler_;
    bool isChangePending_ = false;
};

} // namespace trelundo
