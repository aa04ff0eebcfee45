#include "trelundo/kit/store/Entitlements.h"

#include "trelundo/platform/foundation/Clock.h"
#include "trelundo/platform/foundation/DispatchQueue.h"
#include "trelundo/platform/foundation/Log.h"
#include "trelundo/platform/foundation/Weak.h"

#include <chrono>
#include <cmath>
#include <ranges>
#include <utility>

namespace trelundo {

namespace {

using Standing = Entitlement::Standing;
using Term = OwnedProduct::Term;
using namespace std::chrono;

constexpr sys_days referenceDay{year{2001} / January / 1};
constexpr double secondsOfDay = 86400;

sys_days later(sys_days day, SKProductSubscriptionPeriod const& period) {
    int const count = period.numberOfUnits;
    if (period.unit == SKProductPeriodUnit::day) return day + days{count};
    if (period.unit == SKProductPeriodUnit::week) return day + weeks{count};
    auto const date =
        year_month_day{day} + months{period.unit == SKProductPeriodUnit::year ? 12 * count : count};
    // The 31st of January and a month end on the last of February.
    return date.ok() ? sys_days{date} : sys_days{date.year() / date.month() / last};
}

/// The same time of day in UTC, a calendar period later.
double endOf(SKProductSubscriptionPeriod const& period, double start) {
    double const day = std::floor(start / secondsOfDay);
    auto const end = later(referenceDay + days{static_cast<int>(day)}, period);
    return static_cast<double>((end - referenceDay).count()) * secondsOfDay + (start - day * secondsOfDay);
}

std::optional<double> until(OwnedProduct const& product) {
    if (!product.period || !product.date) return std::nullopt;
    return endOf(*product.period, *product.date);
}

Standing standingOf(OwnedProduct const& product) {
    if (product.isWaiting) return Standing::waiting;
    if (product.term == Term::lifetime) return Standing::owned;
    auto const end = until(product);
    if (!end) return Standing::ownedSoFar;
    return Clock::current().date() < *end ? Standing::owned : Standing::periodIsOver;
}

Entitlement entitlementOf(OwnedProduct const& product) {
    return {.productIdentifier = product.productIdentifier,
            .standing = standingOf(product),
            .until = until(product),
            .transactionIdentifier = product.transactionIdentifier,
            .originalTransactionIdentifier = product.originalIdentifier,
            .receipt = product.receipt};
}

/// Takes over what the catalogue says of a purchase. `isDiscounted` leaves open which period was paid for.
void applyTerms(OwnedProduct& owned, SKProduct const& product, bool isDiscounted) {
    auto const& period = product.subscriptionPeriod();
    owned.term = period ? Term::subscription : Term::lifetime;
    if (period && !owned.wasRestored && !isDiscounted && !product.introductoryPrice()) owned.period = period;
}

OwnedProduct ownedBy(SKPaymentTransaction const& transaction, SKProduct const* product) {
    OwnedProduct owned{.productIdentifier = transaction.payment()->productIdentifier(),
                       .transactionIdentifier = transaction.transactionIdentifier().value_or(""),
                       .date = transaction.transactionDate(),
                       .wasRestored = transaction.transactionState() == SKPaymentTransactionState::restored,
                       .receipt = transaction.transactionReceipt()};
    if (auto const& original = transaction.original())
        owned.originalIdentifier = original->transactionIdentifier().value_or("");
    bool const isDiscounted = static_cast<bool>(transaction.payment()->paymentDiscount());
    if (product)
        applyTerms(owned, *product, isDiscounted);
    else if (isDiscounted)
        owned.term = Term::subscription; // only subscriptions have discounts, and their period stays open
    return owned;
}

} // namespace

Entitlements::Entitlements(std::unique_ptr<OwnedProductsFile> file, std::vector<OwnedProduct> const& products)
    : file_(std::move(file)) {
    for (auto const& product : products) products_.emplace(product.productIdentifier, product);
}

Result<Ref<Entitlements>> Entitlements::open(std::filesystem::path const& file) {
    auto opened = OwnedProductsFile::open(file);
    if (!opened) return opened.error();
    auto products = (*opened)->read();
    if (!products) return products.error();
    return make<Entitlements>(*std::move(opened), *products);
}

// Asking

bool Entitlements::owns(std::string const& productIdentifier) const {
    auto const* product = known(productIdentifier);
    if (!product) return false;
    auto const standing = standingOf(*product);
    return standing == Standing::owned || standing == Standing::ownedSoFar;
}

std::optional<Entitlement> Entitlements::find(std::string const& productIdentifier) const {
    auto const* product = known(productIdentifier);
    return product ? std::optional{entitlementOf(*product)} : std::nullopt;
}

std::vector<Entitlement> Entitlements::all() const {
    std::vector<Entitlement> all;
    for (auto const& product : std::views::values(products_)) all.push_back(entitlementOf(product));
    return all;
}

OwnedProduct const* Entitlements::known(std::string const& productIdentifier) const {
    auto const found = products_.find(productIdentifier);
    return found == products_.end() ? nullptr : &found->second;
}

// Recording

bool Entitlements::record(SKPaymentTransaction const& transaction, SKProduct const* product) {
    auto const& identifier = transaction.payment()->productIdentifier();
    switch (transaction.transactionState()) {
    case SKPaymentTransactionState::purchasing:
        return true;
    case SKPaymentTransactionState::deferred:
        return known(identifier) || save({.productIdentifier = identifier, .isWaiting = true});
    case SKPaymentTransactionState::failed:
        return forgetWaiting(identifier);
    case SKPaymentTransactionState::purchased:
    case SKPaymentTransactionState::restored:
        break;
    }
    auto owned = ownedBy(transaction, product);
    return !isNews(owned) || save(std::move(owned));
}

/// Transactions come again and out of order, and a restored one knows less than the purchase that it tells
/// of.
bool Entitlements::isNews(OwnedProduct const& product) const {
    auto const* before = known(product.productIdentifier);
    if (!before || before->isWaiting) return true;
    if (product.wasRestored) return standingOf(*before) != Standing::owned;
    return before->wasRestored || !before->date || !product.date || *before->date <= *product.date;
}

bool Entitlements::save(OwnedProduct product) {
    auto const* before = known(product.productIdentifier);
    if (before && *before == product) return true;
    if (auto const saved = file_->save(product); !saved) {
        logWarning("Entitlements: " + saved.error().message);
        return false;
    }
    products_.insert_or_assign(product.productIdentifier, product);
    didChange();
    return true;
}

bool Entitlements::forgetWaiting(std::string const& productIdentifier) {
    auto const* before = known(productIdentifier);
    if (!before || !before->isWaiting) return true;
    if (auto const removed = file_->remove(productIdentifier); !removed) {
        logWarning("Entitlements: " + removed.error().message);
        return false;
    }
    products_.erase(productIdentifier);
    didChange();
    return true;
}

void Entitlements::learnTerms(Products const& products) {
    for (auto const& product : products) {
        auto const* before = known(product->productIdentifier());
        if (!before || before->isWaiting || before->term != Term::unknown) continue;
        auto owned = *before;
        applyTerms(owned, *product, false);
        save(std::move(owned));
    }
}

void Entitlements::didChange() {
    if (std::exchange(isChangePending_, true)) return;
    DispatchQueue::main().async([weak = Weak<Entitlements>{this}] {
        auto const entitlements = weak.lock();
        if (!entitlements) return;
        entitlements->isChangePending_ = false;
        if (auto const handler = entitlements->changeHandler_) handler();
    });
}

} // namespace trelundo
