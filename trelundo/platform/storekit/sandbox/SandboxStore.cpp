#include "trelundo/platform/storekit/sandbox/SandboxStore.h"

#include "trelundo/platform/foundation/DispatchQueue.h"
#include "trelundo/platform/foundation/Log.h"
#include "trelundo/platform/foundation/Memory.h"
#include "trelundo/platform/storekit/sandbox/internal/OfferSignature.h"
#include "trelundo/platform/storekit/sandbox/internal/SandboxLedger.h"

#include <algorithm>
#include <charconv>
#include <random>
#include <utility>

namespace trelundo {

namespace {

constexpr std::int64_t firstSeededIdentifier = 1'000'000'001;
constexpr double retryDelay = 1; // seconds, after the disk has failed
constexpr int restoreAttempts = 3;
constexpr std::string_view unrecordedPrefix = "unsaved-"; // keys of failures that could not be recorded

std::int64_t firstIdentifier(std::optional<std::uint32_t> seed) {
    if (seed) return firstSeededIdentifier + std::int64_t{*seed} * 1000;
    std::random_device device;
    return std::uniform_int_distribution<std::int64_t>{2'000'000'000'000'000, 2'999'999'999'999'999}(device);
}

std::optional<std::int64_t> identifierOf(std::string const& key) {
    std::int64_t identifier = 0;
    auto const [stop, error] = std::from_chars(key.data(), key.data() + key.size(), identifier);
    bool const isNumber = error == std::errc{} && stop == key.data() + key.size();
    return isNumber ? std::optional{identifier} : std::nullopt;
}

Ref<NSError> unrecordedError(Error const& reason) {
    return make<NSError>(SKErrorDomain, static_cast<int>(SKErrorCode::unknown),
                         NSError::UserInfo{{NSError::localizedDescriptionKey, reason.message}});
}

Result<std::vector<SandboxStore::StoredTransaction>>
storedTransactions(Result<LedgerRecords> const& records) {
    if (!records) return records.error();
    std::vector<SandboxStore::StoredTransaction> found;
    for (auto const& record : *records)
        found.push_back({record.report(), record.isFinished, record.state == LedgerState::held});
    return found;
}

bool isFailure(SandboxStore::Outcome const& outcome) {
    using Kind = SandboxStore::Outcome::Kind;
    return outcome.kind == Kind::failed || outcome.kind == Kind::failedWithoutError ||
           outcome.kind == Kind::cancelled;
}

} // namespace

Result<std::unique_ptr<SandboxStore>> SandboxStore::open(Options options) {
    return failWithoutMemory([&]() -> Result<std::unique_ptr<SandboxStore>> {
        auto ledger = SandboxLedger::open(options.file, firstIdentifier(options.seed));
        if (!ledger) return ledger.error();
        return std::unique_ptr<SandboxStore>{new SandboxStore{std::move(options), *std::move(ledger)}};
    });
}

SandboxStore::SandboxStore(Options options, std::unique_ptr<SandboxLedger> ledger)
    : configuration_(options.configuration ? std::move(*options.configuration) : StoreConfiguration{})
    , ledger_(std::move(ledger))
    , clock_(options.clock)
    , delay_(options.delay)
    , offerKey_(std::move(options.offerKey)) {}

SandboxStore::~SandboxStore() = default;

// Products

void SandboxStore::loadProducts(std::set<std::string> const& identifiers,
                                std::function<void(ProductsResult)> done) {
    later(delay_, [this, identifiers, done = std::move(done)] { done(productsFor(identifiers)); });
}

StoreBackend::ProductsResult SandboxStore::productsFor(std::set<std::string> const& identifiers) const {
    ProductsResult result;
    if (configuration_.settings().failsLoadingProducts) {
        result.error = makeStoreError(SKErrorCode::unknown);
        return result;
    }
    for (auto const& identifier : identifiers) {
        if (auto const* known = configuration_.find(identifier)) {
            result.products.push_back(known->product);
        } else {
            result.invalidIdentifiers.push_back(identifier);
        }
    }
    return result;
}

bool SandboxStore::isRestorable(std::string const& product) const {
    auto const* known = configuration_.find(product);
    return known && known->isRestorable();
}

// Purchases

void SandboxStore::addPayment(SKPayment::Fields const& payment) { record(payment, decide(payment)); }

void SandboxStore::record(SKPayment::Fields const& payment, Outcome const& outcome) {
    auto const recorded = ledger_->recordPurchase(payment, isRestorable(payment.productIdentifier));
    if (recorded) {
        tell({*recorded});
        return plan(recorded->identifier, outcome);
    }
    // What may still come back with the next run must not be told as failed.
    if (!ledger_->isInDoubt()) return tellUnrecorded(payment, recorded.error());
    tryAgain(recorded.error(), [this, payment, outcome] { record(payment, outcome); });
}

void SandboxStore::plan(std::int64_t identifier, Outcome outcome) {
    inProgress_.insert(identifier);
    later(delay_, [this, identifier, outcome] { settle(identifier, outcome); });
}

void SandboxStore::settle(std::int64_t identifier, Outcome const& outcome) {
    auto const settled = ledger_->settle(identifier, LedgerState::purchasing, ledgerOutcome(outcome));
    if (!settled)
        return tryAgain(settled.error(), [this, identifier, outcome] { settle(identifier, outcome); });
    lastReason_.clear();
    inProgress_.erase(identifier);
    if (*settled) tell({**settled}); // else it was cleared meanwhile
}

Result<void> SandboxStore::finish(std::string const& key) {
    return failWithoutMemory([&]() -> Result<void> {
        if (key.starts_with(unrecordedPrefix)) return {};
        auto const identifier = identifierOf(key);
        if (!identifier) return Error{"no transaction \"" + key + "\""};
        return ledger_->finish(*identifier);
    });
}

void SandboxStore::synchronize() {
    auto const waiting = ledger_->unfinished();
    if (!waiting) return tryAgain(waiting.error(), [this] { synchronize(); });
    tell(*waiting);
    for (auto const& record : *waiting) {
        // A purchase that the last run could not end goes on in this one.
        bool const isLeftOver = record.state == LedgerState::purchasing;
        if (isLeftOver && !inProgress_.contains(record.identifier))
            plan(record.identifier, decide(record.payment, record.identifier));
    }
}

// Outcomes

/// The outcome of a payment, which may have a transaction already.
SandboxStore::Outcome SandboxStore::decide(SKPayment::Fields const& payment, std::int64_t identifier) {
    std::optional<Outcome> scripted;
    if (!outcomes_.empty()) {
        scripted = outcomes_.front();
        outcomes_.pop_front();
    }
    // A failure that was asked for stays as asked; the rest needs a payment that the store would take.
    if (scripted && isFailure(*scripted)) return *scripted;
    if (auto const code = refusal(payment, identifier))
        return {.kind = Outcome::Kind::failed, .code = static_cast<int>(*code)};
    if (scripted) return *scripted;
    auto const& settings = configuration_.settings();
    if (settings.failsTransactions) return {.kind = Outcome::Kind::failed, .code = settings.transactionError};
    bool const asksToBuy = settings.asksToBuy || payment.simulatesAskToBuyInSandbox;
    return {.kind = asksToBuy ? Outcome::Kind::deferred : Outcome::Kind::purchased};
}

std::optional<SKErrorCode> SandboxStore::refusal(SKPayment::Fields const& payment,
                                                 std::int64_t identifier) const {
    if (!canMakePayments_) return SKErrorCode::paymentNotAllowed;
    auto const* known = configuration_.find(payment.productIdentifier);
    if (!known) return SKErrorCode::storeProductNotAvailable;
    if (!payment.paymentDiscount) return std::nullopt;
    auto const code = offerRefusal(*payment.paymentDiscount, *known->product);
    return code || !offerKey_ ? code : signatureRefusal(payment, identifier);
}

std::optional<SKErrorCode> SandboxStore::offerRefusal(SKPaymentDiscount const& discount,
                                                      SKProduct const& product) const {
    auto const isMeant = [&](auto const& offer) { return offer->identifier() == discount.identifier(); };
    if (discount.identifier().empty()) return SKErrorCode::missingOfferParams;
    if (std::ranges::none_of(product.discounts(), isMeant)) return SKErrorCode::invalidOfferIdentifier;
    if (discount.keyIdentifier().empty() || discount.nonce().empty() || discount.signature().empty())
        return SKErrorCode::missingOfferParams;
    return std::nullopt;
}

std::optional<SKErrorCode> SandboxStore::signatureRefusal(SKPayment::Fields const& payment,
                                                          std::int64_t identifier) const {
    auto const& discount = *payment.paymentDiscount;
    auto const isSigned = checkOfferSignature(*offerKey_, payment, date());
    auto const isUsed = isSigned ? ledger_->hasNonce(discount.nonce(), identifier) : Result<bool>{false};
    if (isSigned && isUsed && !*isUsed) return std::nullopt;
    logWarning(!isSigned ? isSigned.error().message
               : !isUsed ? isUsed.error().message
                         : "offer \"" + discount.identifier() + "\": the nonce was used before");
    return isUsed ? SKErrorCode::invalidSignature : SKErrorCode::unknown;
}

LedgerOutcome SandboxStore::ledgerOutcome(Outcome const& outcome) const {
    using Kind = Outcome::Kind;
    auto const failure = [](SKErrorCode code) {
        return LedgerOutcome{.state = LedgerState::failed, .error = makeStoreError(code)};
    };
    switch (outcome.kind) {
    case Kind::purchased:
        break;
    case Kind::failed:
        return failure(static_cast<SKErrorCode>(outcome.code));
    case Kind::failedWithoutError:
        return {.state = LedgerState::failed};
    case Kind::deferred:
        return {.state = LedgerState::deferred};
    case Kind::cancelled:
        return failure(SKErrorCode::paymentCancelled);
    case Kind::interrupted: {
        auto interrupted = failure(SKErrorCode::unknown);
        interrupted.isInterrupted = true;
        return interrupted;
    }
    }
    return {.state = LedgerState::purchased, .date = date()};
}

// Restores

void SandboxStore::restore(std::optional<std::string> const& /*applicationUsername*/) {
    later(delay_, [this] { performRestore(); });
}

void SandboxStore::performRestore() {
    if (!listener_) return;
    bool const failsByConfiguration = configuration_.settings().failsRestoring;
    auto const usual = failsByConfiguration ? RestoreOutcome::Kind::failed : RestoreOutcome::Kind::all;
    auto const outcome = restoreOutcome_.value_or(RestoreOutcome{.kind = usual});
    switch (outcome.kind) {
    case RestoreOutcome::Kind::nothing:
        return listener_->restoreFinished();
    case RestoreOutcome::Kind::failed:
        return listener_->restoreFailed(makeStoreError(outcome.code));
    case RestoreOutcome::Kind::failedWithoutError:
        return listener_->restoreFailed(nullptr);
    case RestoreOutcome::Kind::all:
        return restoreEverything(1);
    }
}

void SandboxStore::restoreEverything(int attempt) {
    if (!listener_) return;
    auto const restored = ledger_->restore(date());
    if (!restored && attempt < restoreAttempts)
        return tryAgain(restored.error(), [this, attempt] { restoreEverything(attempt + 1); });
    if (!restored) return listener_->restoreFailed(unrecordedError(restored.error()));
    tell(*restored);
    listener_->restoreFinished();
}

// What happens outside a purchase

Result<void> SandboxStore::resume() {
    return failWithoutMemory([&]() -> Result<void> {
        std::erase_if(outcomes_, [](Outcome const& each) { return each.kind == Outcome::Kind::interrupted; });
        auto const resumed = ledger_->resume(date());
        if (!resumed) return resumed.error();
        tell(*resumed);
        return {};
    });
}

Result<void> SandboxStore::approve(std::optional<std::string> const& key) {
    return decideDeferred(key, {.state = LedgerState::purchased, .date = date()});
}

Result<void> SandboxStore::decline(std::optional<std::string> const& key) {
    return decideDeferred(
        key, {.state = LedgerState::failed, .error = makeStoreError(SKErrorCode::paymentNotAllowed)});
}

Result<void> SandboxStore::decideDeferred(std::optional<std::string> const& key,
                                          LedgerOutcome const& outcome) {
    return failWithoutMemory([&]() -> Result<void> {
        auto const waiting = ledger_->unfinished();
        if (!waiting) return waiting.error();
        auto const deferred = std::ranges::find_if(*waiting, [&](auto const& record) {
            return record.state == LedgerState::deferred &&
                   (!key || *key == std::to_string(record.identifier));
        });
        if (deferred == waiting->end())
            return Error{key ? "no deferred transaction " + *key : "no deferred transaction"};
        auto const settled = ledger_->settle(deferred->identifier, LedgerState::deferred, outcome);
        if (!settled) return settled.error();
        if (*settled) tell({**settled});
        return {};
    });
}

Result<void> SandboxStore::promote(std::string const& product) {
    return failWithoutMemory([&]() -> Result<void> {
        auto const* known = configuration_.find(product);
        if (!known) return Error{"no product " + product};
        if (!listener_) return Error{"nobody listens to the store"};
        listener_->promotedPurchase({.productIdentifier = product}, known->product);
        return {};
    });
}

// Records

Result<std::vector<SandboxStore::StoredTransaction>> SandboxStore::transactions() const {
    return failWithoutMemory(
        [&]() -> Result<std::vector<StoredTransaction>> { return storedTransactions(ledger_->records()); });
}

Result<std::vector<SandboxStore::StoredTransaction>> SandboxStore::read(std::filesystem::path const& file) {
    return failWithoutMemory([&] { return storedTransactions(SandboxLedger::read(file)); });
}

Result<void> SandboxStore::clear() {
    return failWithoutMemory([&] { return ledger_->clear(); });
}

// Reports

void SandboxStore::tell(std::vector<LedgerRecord> const& records) {
    std::vector<StoreTransaction> reports;
    for (auto const& record : records) reports.push_back(record.report());
    if (listener_ && !reports.empty()) listener_->transactionsUpdated(std::move(reports));
}

void SandboxStore::tellUnrecorded(SKPayment::Fields const& payment, Error const& reason) {
    logWarning(reason.message);
    StoreTransaction failed{.key = std::string{unrecordedPrefix} + std::to_string(++unrecordedCount_),
                            .payment = payment,
                            .state = SKPaymentTransactionState::failed,
                            .error = unrecordedError(reason)};
    if (listener_) listener_->transactionsUpdated({std::move(failed)});
}

void SandboxStore::tryAgain(Error const& reason, std::function<void()> work) {
    if (std::exchange(lastReason_, reason.message) != reason.message) logWarning(reason.message);
    later(retryDelay, std::move(work));
}

void SandboxStore::later(double seconds, std::function<void()> work) const {
    auto guarded = [token = std::weak_ptr<char const>(token_), work = std::move(work)] {
        if (!token.expired()) work();
    };
    if (seconds > 0) {
        DispatchQueue::main().asyncAfter(seconds, std::move(guarded));
    } else {
        DispatchQueue::main().async(std::move(guarded));
    }
}

double SandboxStore::date() const { return (clock_ ? *clock_ : Clock::current()).date(); }

} // namespace trelundo
