#include "trelundo/platform/storekit/sandbox/SandboxStore.h"
#include "trelundo/platform/storekit/sandbox/internal/OfferSignature.h"
#include "trelundo/platform/storekit/sandbox/internal/SandboxLedger.h"

#include <algorithm>

namespace trelundo {

namespace {

using State = LedgerState;

bool isFailure(SandboxStore::Outcome const& outcome) {
    using Kind = SandboxStore::Outcome::Kind;
    return outcome.kind == Kind::failed || outcome.kind == Kind::failedWithoutError ||
           outcome.kind == Kind::cancelled;
}

} // namespace

// Outcomes

SandboxStore::Outcome SandboxStore::decide(SKPayment::Fields const& payment) {
    std::optional<Outcome> scripted;
    if (!outcomes_.empty()) {
        scripted = outcomes_.front();
        outcomes_.pop_front();
    }
    // A failure that was asked for stays as asked; the rest needs a payment that the store would take.
    if (scripted && isFailure(*scripted)) return *scripted;
    if (auto const code = refusal(payment))
        return {.kind = Outcome::Kind::failed, .code = static_cast<int>(*code)};
    if (scripted) return *scripted;
    auto const& settings = configuration_.settings();
    if (settings.failsTransactions) return {.kind = Outcome::Kind::failed, .code = settings.transactionError};
    bool const asksToBuy = settings.asksToBuy || payment.simulatesAskToBuyInSandbox;
    return {.kind = asksToBuy ? Outcome::Kind::deferred : Outcome::Kind::purchased};
}

std::optional<SKErrorCode> SandboxStore::refusal(SKPayment::Fields const& payment) const {
    if (!canMakePayments_) return SKErrorCode::paymentNotAllowed;
    auto const* known = configuration_.find(payment.productIdentifier);
    if (!known) return SKErrorCode::storeProductNotAvailable;
    return payment.paymentDiscount ? offerRefusal(payment, *known->product) : std::nullopt;
}

std::optional<SKErrorCode> SandboxStore::offerRefusal(SKPayment::Fields const& payment,
                                                      SKProduct const& product) const {
    auto const& discount = *payment.paymentDiscount;
    auto const isMeant = [&](auto const& offer) { return offer->identifier() == discount.identifier(); };
    if (discount.identifier().empty()) return SKErrorCode::missingOfferParams;
    if (std::ranges::none_of(product.discounts(), isMeant)) return SKErrorCode::invalidOfferIdentifier;
    if (discount.keyIdentifier().empty() || discount.nonce().empty() || discount.signature().empty())
        return SKErrorCode::missingOfferParams;
    if (offerKey_ && !isOfferSignatureValid(*offerKey_, payment)) return SKErrorCode::invalidSignature;
    return std::nullopt;
}

LedgerOutcome SandboxStore::ledgerOutcome(Outcome const& outcome) const {
    using Kind = Outcome::Kind;
    auto const failure = [](SKErrorCode code) {
        return LedgerOutcome{.state = State::failed, .error = makeStoreError(code)};
    };
    switch (outcome.kind) {
    case Kind::purchased:
        break;
    case Kind::failed:
        return failure(static_cast<SKErrorCode>(outcome.code));
    case Kind::failedWithoutError:
        return {.state = State::failed};
    case Kind::deferred:
        return {.state = State::deferred};
    case Kind::cancelled:
        return failure(SKErrorCode::paymentCancelled);
    case Kind::interrupted: {
        auto interrupted = failure(SKErrorCode::unknown);
        interrupted.isInterrupted = true;
        return interrupted;
    }
    }
    return {.state = State::purchased, .date = date()};
}

// What happens outside a purchase

bool SandboxStore::resume() {
    std::erase_if(outcomes_, [](Outcome const& each) { return each.kind == Outcome::Kind::interrupted; });
    auto const resumed = ledger_->resume(date());
    if (!resumed) return reportFailure();
    tell("resume", *resumed);
    return true;
}

bool SandboxStore::approve(std::optional<std::string> const& key) {
    return decideDeferred(key, {.state = State::purchased, .date = date()});
}

bool SandboxStore::decline(std::optional<std::string> const& key) {
    return decideDeferred(key,
                          {.state = State::failed, .error = makeStoreError(SKErrorCode::paymentNotAllowed)});
}

bool SandboxStore::decideDeferred(std::optional<std::string> const& key, LedgerOutcome const& outcome) {
    auto const waiting = ledger_->unfinished();
    auto const deferred = std::ranges::find_if(waiting, [&](auto const& record) {
        return record.state == State::deferred && (!key || *key == std::to_string(record.identifier));
    });
    if (deferred == waiting.end()) {
        lastError_ = key ? "no deferred transaction " + *key : "no deferred transaction";
        return false;
    }
    if (!ledger_->settle("approval", deferred->identifier, State::deferred, outcome)) return reportFailure();
    if (auto const settled = ledger_->find(deferred->identifier)) tell("approval", {*settled});
    return true;
}

bool SandboxStore::promote(std::string const& product) {
    auto const* known = configuration_.find(product);
    if (!known || !listener_) {
        lastError_ = known ? "nobody listens to the store" : "no product " + product;
        return false;
    }
    listener_->promotedPurchase({.productIdentifier = product}, known->product);
    return true;
}

void SandboxStore::setStorefront(std::string code) {
    storefront_ = std::move(code);
    if (listener_) listener_->storefrontChanged();
}

// Records

std::vector<SandboxStore::StoredTransaction> SandboxStore::transactions() const {
    std::vector<StoredTransaction> found;
    for (auto const& record : ledger_->records()) {
        bool const isHeld = record.state == State::held;
        found.push_back({record.report(), record.isFinished, isHeld});
    }
    return found;
}

bool SandboxStore::clear() { return ledger_->clear() || reportFailure(); }

} // namespace trelundo
