#pragma once

#include "trelundo/platform/foundation/Clock.h"
#include "trelundo/platform/foundation/Result.h"
#include "trelundo/platform/storekit/SKError.h"
#include "trelundo/platform/storekit/StoreBackend.h"
#include "trelundo/platform/storekit/sandbox/OfferKey.h"
#include "trelundo/platform/storekit/sandbox/StoreConfiguration.h"

#include <deque>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace trelundo {

class SandboxLedger;
struct LedgerOutcome;
struct LedgerRecord;

/// The embedded store: sells the catalogue of a StoreKit configuration without network, account or money, and
/// keeps its transactions in a file. Whatever it reports is on the disk already. It is a stage for trying and
/// testing, and NO PROOF OF PURCHASE: anyone who can write its file owns everything. Main thread only.
///
/// Owned by the host: open it, then SKPaymentQueue::setBackend(). Subscriptions never expire here, and buying
/// what is owned gives another purchased transaction without changing what a restore brings.
class SandboxStore : public StoreBackend {
public:
    /// What becomes of a purchase. An interrupted one fails with code 0, and arrives as purchased after
    /// resume().
    struct Outcome {
        enum class Kind : int { purchased, failed, failedWithoutError, deferred, cancelled, interrupted };
        Kind kind = Kind::purchased;
        int code = 0; // of a failure
    };
    struct RestoreOutcome {
        enum class Kind : int { all, nothing, failed, failedWithoutError };
        Kind kind = Kind::all;
        int code = 0; // of a failure
    };

    struct Options {
        std::filesystem::path file = {}; // empty: in memory
        /// Absent: a store that knows no product; what is pending can still be listed, approved or declined.
        std::optional<StoreConfiguration> configuration = std::nullopt;
        /// With a seed, identifiers count from 1000000001 plus 1000 times the seed; without, from a random
        /// number. A file that holds transactions continues after its last one.
        std::optional<std::uint32_t> seed = std::nullopt;
        Clock* clock = nullptr; // dates transactions, and must outlive the store; null: Clock::current()
        double delay = 0;       // seconds from a request to its outcome; 0: in a following turn
        /// With a key, promotional offers must be signed by it, not more than 24 hours ago by the clock, with
        /// a nonce that is a UUID and that no purchase has used (else code 12). Without, any signature but an
        /// empty one will do.
        std::optional<OfferKey> offerKey = std::nullopt;
    };
    /// The error names the file. A broken store is set aside, with a warning, and a new one begun; what is no
    /// store is an error, and left alone.
    static Result<std::unique_ptr<SandboxStore>> open(Options options);

    struct StoredTransaction {
        StoreTransaction transaction = {};
        bool isFinished = false;
        bool isHeld = false; // waits for resume(); unknown to the queue
    };

    /// What is on record in a file, oldest first, read without changing anything on the disk. A file that is
    /// missing, no store, broken or in use is an error.
    static Result<std::vector<StoredTransaction>> read(std::filesystem::path const& file);

    ~SandboxStore() override;

    // What a script decides
    /// Outcomes of the next purchases, first come first served. They yield only to what the store refuses:
    /// payments switched off (code 4), an unknown product (5), or an offer that does not hold (11, 12, 13).
    void setNextOutcome(Outcome outcome) { outcomes_.push_back(outcome); }
    /// Of every restore from now on.
    void setRestoreOutcome(RestoreOutcome outcome) { restoreOutcome_ = outcome; }
    void interruptNext() { setNextOutcome({.kind = Outcome::Kind::interrupted}); }
    /// Completes every interrupted purchase.
    Result<void> resume();
    /// Approves a deferred transaction, the oldest when `key` is absent; it arrives as purchased.
    Result<void> approve(std::optional<std::string> const& key = std::nullopt);
    /// As approve(), but the transaction fails with code 4.
    Result<void> decline(std::optional<std::string> const& key = std::nullopt);
    /// Begins a purchase of `product` in the store. An unknown product is an error, and so is a store that
    /// nobody listens to.
    Result<void> promote(std::string const& product);
    void setCanMakePayments(bool canMakePayments) { canMakePayments_ = canMakePayments; }

    // What is on record
    Result<std::vector<StoredTransaction>> transactions() const; // oldest first
    /// Forgets every transaction and everything owned.
    Result<void> clear();
    StoreConfiguration const& configuration() const { return configuration_; }

    void setListener(StoreBackendListener* listener) override { listener_ = listener; }
    void loadProducts(std::set<std::string> const& identifiers,
                      std::function<void(ProductsResult)> done) override;
    bool canMakePayments() const override { return canMakePayments_; }
    void addPayment(SKPayment::Fields const& payment) override;
    Result<void> finish(std::string const& key) override;
    void restore(std::optional<std::string> const& applicationUsername) override;
    void synchronize() override;
    std::string storefront() const override { return configuration_.settings().storefront; }

private:
    SandboxStore(Options options, std::unique_ptr<SandboxLedger> ledger);

    Outcome decide(SKPayment::Fields const& payment, std::int64_t identifier = 0);
    std::optional<SKErrorCode> refusal(SKPayment::Fields const& payment, std::int64_t identifier) const;
    std::optional<SKErrorCode> offerRefusal(SKPaymentDiscount const& discount,
                                            SKProduct const& product) const;
    std::optional<SKErrorCode> signatureRefusal(SKPayment::Fields const& payment,
                                                std::int64_t identifier) const;
    LedgerOutcome ledgerOutcome(Outcome const& outcome) const;
    bool isRestorable(std::string const& product) const;
    ProductsResult productsFor(std::set<std::string> const& identifiers) const;

    void record(SKPayment::Fields const& payment, Outcome const& outcome);
    void plan(std::int64_t identifier, Outcome outcome);
    void settle(std::int64_t identifier, Outcome const& outcome);
    Result<void> decideDeferred(std::optional<std::string> const& key, LedgerOutcome const& outcome);
    void performRestore();
    void restoreEverything(int attempt);
    void tell(std::vector<LedgerRecord> const& records);
    void tellUnrecorded(SKPayment::Fields const& payment, Error const& reason);
    void tryAgain(Error const& reason, std::function<void()> work);
    void later(double seconds, std::function<void()> work) const;
    double date() const;

    StoreConfiguration configuration_;
    std::unique_ptr<SandboxLedger> ledger_;
    Clock* clock_;
    double delay_;
    std::optional<OfferKey> offerKey_;
    StoreBackendListener* listener_ = nullptr;
    std::deque<Outcome> outcomes_;
    std::optional<RestoreOutcome> restoreOutcome_;
    bool canMakePayments_ = true;
    std::unordered_set<std::int64_t> inProgress_; // purchases whose outcome is decided and on its way
    int unrecordedCount_ = 0;
    std::string lastReason_;                                                 // of trying again; told once
    std::shared_ptr<char const> token_ = std::make_shared<char const>('\0'); // expires with the store
};

} // namespace trelundo
