#include "trelundo/platform/storekit/sandbox/SandboxStore.h"

#include "trelundo/platform/foundation/DispatchQueue.h"
#include "trelundo/platform/foundation/Log.h"
#include "trelundo/platform/storekit/sandbox/internal/SandboxLedger.h"

#include <algorithm>
#include <charconv>
#include <random>

namespace trelundo {

namespace {

using State = SKPaymentTransactionState;

constexpr std::int64_t firstSeededIdentifier = 1'000'000'001;
constexpr double retryDelay = 1;                          // seconds, after a commit that failed
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

} // namespace

SandboxStore::Opened SandboxStore::open(Options options) {
    auto opened = SandboxLedger::open({.file = options.file,
                                       .firstIdentifier = firstIdentifier(options.seed),
                                       .stepHook = options.stepHook});
    Opened result{.error = opened.error};
    if (!opened.setAside.empty()) {
        result.warning = options.file.string() + ": the store was broken; it was kept as " + opened.setAside;
        logWarning(result.warning);
    }
    if (opened.ledger) result.store.reset(new SandboxStore(std::move(options), std::move(opened.ledger)));
    return result;
}

SandboxStore::SandboxStore(Options options, std::unique_ptr<SandboxLedger> ledger)
    : configuration_(options.configuration ? std::move(*options.configuration) : StoreConfiguration{})
    , ledger_(std::move(ledger))
    , clock_(options.clock)
    , delay_(options.delay)
    , offerKey_(std::move(options.offerKey))
    , storefront_(configuration_.settings().storefront) {}

SandboxStore::~SandboxStore() = default;

std::vector<std::string> const& SandboxStore::steps() {
    static auto const names = [] {
        std::vector<std::string> result;
        for (std::string const operation :
             {"purchase", "outcome", "finish", "restore", "approval", "resume"}) {
            for (auto const* moment : {"begin", "written", "committed"})
                result.push_back(operation + "." + moment);
            if (operation != "finish") result.push_back(operation + ".told");
        }
        return result;
    }();
    return names;
}

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

void SandboxStore::addPayment(SKPayment::Fields const& payment) {
    auto const outcome = decide(payment);
    auto const record = ledger_->recordPurchase(payment, isRestorable(payment.productIdentifier));
    if (!record) return tellUnrecorded(payment);
    tell("purchase", {*record});
    plan(record->identifier, outcome);
}

void SandboxStore::plan(std::int64_t identifier, Outcome outcome) {
    inProgress_.insert(identifier);
    later(delay_, [this, identifier, outcome] { settle(identifier, outcome); });
}

void SandboxStore::settle(std::int64_t identifier, Outcome const& outcome) {
    auto const record = ledger_->find(identifier);
    if (!record || record->state != LedgerState::purchasing) {
        inProgress_.erase(identifier); // cleared meanwhile
        return;
    }
    if (!ledger_->settle("outcome", identifier, LedgerState::purchasing, ledgerOutcome(outcome))) {
        reportFailure();
        return later(retryDelay, [this, identifier, outcome] { settle(identifier, outcome); });
    }
    inProgress_.erase(identifier);
    if (auto const settled = ledger_->find(identifier)) tell("outcome", {*settled});
}

std::optional<std::string> SandboxStore::buyAtOnce(SKPayment::Fields const& payment) {
    auto const record = ledger_->recordPurchase(payment, isRestorable(payment.productIdentifier));
    if (record && ledger_->settle("outcome", record->identifier, LedgerState::purchasing, ledgerOutcome({})))
        return std::to_string(record->identifier);
    reportFailure();
    return std::nullopt;
}

bool SandboxStore::finish(std::string const& key) {
    if (key.starts_with(unrecordedPrefix)) return true;
    auto const identifier = identifierOf(key);
    return identifier && (ledger_->finish(*identifier) || reportFailure());
}

void SandboxStore::synchronize() {
    auto const waiting = ledger_->unfinished();
    tell("synchronize", waiting);
    for (auto const& record : waiting) {
        // A purchase that the last run could not end goes on in this one.
        bool const isLeftOver = record.state == LedgerState::purchasing;
        if (isLeftOver && !inProgress_.contains(record.identifier))
            plan(record.identifier, decide(record.payment));
    }
}

// Restores

void SandboxStore::restore(std::optional<std::string> const& /*applicationUsername*/) {
    later(delay_, [this] { performRestore(); });
}

void SandboxStore::performRestore() {
    bool const failsByConfiguration = configuration_.settings().failsRestoring;
    auto const usual = failsByConfiguration ? RestoreOutcome::Kind::failed : RestoreOutcome::Kind::all;
    auto const outcome = restoreOutcome_.value_or(RestoreOutcome{.kind = usual});
    auto const end = [this](bool isSuccess, Ref<NSError> const& error) {
        if (!listener_) return;
        if (isSuccess) return listener_->restoreFinished();
        listener_->restoreFailed(error);
    };
    switch (outcome.kind) {
    case RestoreOutcome::Kind::nothing:
        return end(true, nullptr);
    case RestoreOutcome::Kind::failed:
        return end(false, makeStoreError(outcome.code));
    case RestoreOutcome::Kind::failedWithoutError:
        return end(false, nullptr);
    case RestoreOutcome::Kind::all:
        break;
    }
    auto const restored = ledger_->restore(date());
    if (restored) tell("restore", *restored);
    if (!restored) reportFailure();
    end(restored.has_value(), restored ? nullptr : makeStoreError(SKErrorCode::unknown));
}

// Reports

void SandboxStore::tell(std::string_view operation, std::vector<LedgerRecord> const& records) {
    std::vector<StoreTransaction> reports;
    for (auto const& record : records) reports.push_back(record.report());
    if (listener_ && !reports.empty()) listener_->transactionsUpdated(std::move(reports));
    ledger_->step(operation, "told");
}

void SandboxStore::tellUnrecorded(SKPayment::Fields const& payment) {
    reportFailure();
    NSError::UserInfo const reason{{NSError::localizedDescriptionKey, lastError_}};
    StoreTransaction failed{.key = std::string{unrecordedPrefix} + std::to_string(++unrecordedCount_),
                            .payment = payment,
                            .state = State::failed,
                            .error =
                                make<NSError>(SKErrorDomain, static_cast<int>(SKErrorCode::unknown), reason)};
    if (listener_) listener_->transactionsUpdated({std::move(failed)});
}

bool SandboxStore::reportFailure() {
    lastError_ = ledger_->lastError();
    logWarning(lastError_);
    return false;
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
