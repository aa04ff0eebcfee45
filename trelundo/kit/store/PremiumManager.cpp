#include "trelundo/kit/store/PremiumManager.h"

#include "trelundo/kit/common/Texts.h"
#include "trelundo/platform/foundation/DispatchQueue.h"
#include "trelundo/platform/foundation/FatalError.h"
#include "trelundo/platform/foundation/FirstException.h"
#include "trelundo/platform/foundation/MainThread.h"
#include "trelundo/platform/foundation/Memory.h"
#include "trelundo/platform/foundation/Strings.h"
#include "trelundo/platform/storekit/SKError.h"

#include <algorithm>
#include <atomic>
#include <unordered_map>

namespace trelundo {

namespace {

EventParameters errorParameters(std::string function, Ref<NSError> const& error) {
    return {{"Class", "PremiumManager"},
            {"Function", std::move(function)},
            {"Error", error ? error->description() : std::string{}}};
}

/// Puts products into the order of `identifiers`. A product that is not among them compares with nothing, so
/// it keeps its place and the runs on either side of it are sorted on their own.
void sortByHostOrder(Products& products, std::vector<std::string> const& identifiers) {
    std::unordered_map<std::string_view, std::size_t> positions;
    for (std::size_t i = 0; i < identifiers.size(); ++i) positions.try_emplace(identifiers[i], i);
    auto const isListed = [&](Ref<SKProduct> const& product) {
        return positions.contains(product->productIdentifier());
    };
    auto const comesBefore = [&](Ref<SKProduct> const& a, Ref<SKProduct> const& b) {
        return positions.at(a->productIdentifier()) < positions.at(b->productIdentifier());
    };
    for (auto begin = products.begin(); begin != products.end();) {
        begin = std::find_if(begin, products.end(), isListed);
        auto const end = std::find_if_not(begin, products.end(), isListed);
        std::stable_sort(begin, end, comesBefore);
        begin = end;
    }
}

} // namespace

std::optional<PremiumManagerState> premiumManagerState(int rawValue) {
    if (rawValue < 0 || rawValue > 3) return std::nullopt;
    return static_cast<PremiumManagerState>(rawValue);
}

PremiumManager::PremiumManager() = default;

PremiumManager::~PremiumManager() { SKPaymentQueue::defaultQueue().removeTransactionObserver(*this); }

PremiumManager& PremiumManager::sharedInstance() {
    // Never destroyed: screens and the queue may ask for it to the very end of the process.
    static auto const& manager = *new Ref<PremiumManager>{make<PremiumManager>()};
    static std::atomic_flag isObserving;
    if (isObserving.test_and_set()) return *manager;
    // Not inside the initialiser above: observing asks the store for what is unfinished, which may ask for
    // the manager.
    auto const observe = [] { SKPaymentQueue::defaultQueue().addTransactionObserver(manager); };
    if (isMainThread()) {
        observe();
    } else {
        DispatchQueue::main().async(observe);
    }
    return *manager;
}

std::optional<std::string> PremiumManager::applicationUsername() const {
    auto const delegate = delegate_.lock();
    return delegate ? delegate->applicationUsername() : std::nullopt;
}

// Catalogue

void PremiumManager::start(std::vector<std::string> productIdentifiers) {
    requireMemory([&] {
        if (state_ != PremiumManagerState::notStarted && state_ != PremiumManagerState::failed) return;
        state_ = PremiumManagerState::loading;
        productIdentifiers_ = std::move(productIdentifiers);
        productsRequest_ = make<SKProductsRequest>(
            std::set<std::string>{productIdentifiers_.begin(), productIdentifiers_.end()});
        productsRequest_->setDelegate(this);
        productsRequest_->start();
    });
}

void PremiumManager::productsRequestDidReceive(SKProductsRequest& /*request*/,
                                               SKProductsResponse const& response) {
    products_ = response.products();
}

void PremiumManager::requestDidFinish(SKRequest& request) {
    if (!dynamic_cast<SKProductsRequest*>(&request)) return;
    sortByHostOrder(products_, productIdentifiers_);
    bool const isComplete =
        std::ranges::equal(products_, productIdentifiers_, {}, &SKProduct::productIdentifier);
    state_ = isComplete && !productIdentifiers_.empty() ? PremiumManagerState::loaded
                                                        : PremiumManagerState::failed;
    if (auto delegate = delegate_.lock()) delegate->premiumManagerDidLoadProducts(products_);
}

void PremiumManager::requestDidFailWithError(SKRequest& request, Ref<NSError> const& error) {
    if (!dynamic_cast<SKProductsRequest*>(&request)) return;
    state_ = PremiumManagerState::failed;
    log("Error", errorParameters("request", error));
}

// Purchase and restore

bool PremiumManager::isCancellation(NSError const& error) {
    return error.code() == static_cast<int>(SKErrorCode::paymentCancelled) || error.code() == -2;
}

bool PremiumManager::purchase(Purchase purchase) {
    return requireMemory([&] {
        buySource_ = purchase.source;
        buyScreen_ = purchase.screen;
        buyPremiumId_ = purchase.premiumId;
        buyABTest_ = purchase.abTest;
        buyCompletion_ = std::move(purchase.completion);
        if (!purchase.payment) return true;
        if (!SKPaymentQueue::canMakePayments()) {
            refuse(purchase.payment);
            return false;
        }
        SKPaymentQueue::defaultQueue().add(purchase.payment);
        auto const discount = purchase.payment->paymentDiscount();
        log("Buy", {{"Product", purchase.payment->productIdentifier()},
                    {"Source", buySource_},
                    {"Screen", buyScreen_},
                    {"Premium Id", buyPremiumId_},
                    {"AB Test", buyABTest_},
                    {"Promotion", discount ? std::optional{discount->identifier()} : std::nullopt}});
        return true;
    });
}

void PremiumManager::refuse(Ref<SKPayment> const& payment) {
    reportPurchase(false, payment, false, nullptr);
    log("Error", {{"Class", "PremiumManager"},
                  {"Function", "purchase"},
                  {"Product", payment->productIdentifier()},
                  {"Can Make Payments", SKPaymentQueue::canMakePayments() ? "true" : "false"}});
}

void PremiumManager::restore(std::string const& source, RestoreCompletion completion) {
    requireMemory([&] {
        restoreCount_ = 0;
        restoreCompletion_ = std::move(completion);
        SKPaymentQueue::defaultQueue().restoreCompletedTransactions();
        log("Restore Purchuses", {{"Source", source}});
    });
}

void PremiumManager::paymentQueueUpdatedTransactions(SKPaymentQueue& /*queue*/,
                                                     SKPaymentTransactions const& transactions) {
    FirstException failures; // of the host: they must not keep a transaction from being finished
    SKPaymentTransactions restored;
    for (auto const& transaction : transactions) {
        switch (transaction->transactionState()) {
        case SKPaymentTransactionState::purchasing:
            break;
        case SKPaymentTransactionState::purchased:
            failures.run([&] { completePurchase(transaction); });
            break;
        case SKPaymentTransactionState::failed:
            failures.run([&] { failPurchase(transaction); });
            break;
        case SKPaymentTransactionState::restored:
            restoreCount_ = trappingSum(restoreCount_, 1);
            restored.push_back(transaction);
            break;
        case SKPaymentTransactionState::deferred:
            failures.run([&] { deferPurchase(transaction); });
            break;
        }
    }
    // Only now, when all of the update are counted, so that they give one report.
    for (auto const& transaction : restored) failures.run([&] { completeRestored(transaction); });
    failures.rethrow();
}

void PremiumManager::completePurchase(Ref<SKPaymentTransaction> const& transaction) {
    SKPaymentQueue::defaultQueue().finishTransaction(transaction);
    reportPurchase(true, transaction->payment(), false, nullptr);
}

void PremiumManager::failPurchase(Ref<SKPaymentTransaction> const& transaction) {
    auto const error = transaction->error();
    FirstException failures;
    if (!error || !isCancellation(*error))
        failures.run([&] { log("Error", errorParameters("updatedTransactions", error)); });
    SKPaymentQueue::defaultQueue().finishTransaction(transaction);
    failures.run([&] { reportPurchase(false, transaction->payment(), false, error); });
    failures.rethrow();
}

void PremiumManager::deferPurchase(Ref<SKPaymentTransaction> const& transaction) {
    FirstException failures;
    failures.run([&] { log("Purchases Deferred"); });
    failures.run([&] { reportPurchase(false, transaction->payment(), true, nullptr); });
    failures.rethrow();
}

void PremiumManager::completeRestored(Ref<SKPaymentTransaction> const& transaction) {
    SKPaymentQueue::defaultQueue().finishTransaction(transaction);
    restoreCount_ = trappingSum(restoreCount_, -1);
    if (restoreCount_ == 0) reportRestored();
}

void PremiumManager::paymentQueueRestoreCompletedTransactionsFinished(SKPaymentQueue& queue) {
    // With transactions on the queue, the restored ones report the end themselves.
    if (queue.transactions().empty()) reportRestored();
}

void PremiumManager::paymentQueueRestoreCompletedTransactionsFailed(SKPaymentQueue& /*queue*/,
                                                                    Ref<NSError> const& error) {
    FirstException failures;
    if (!error || !isCancellation(*error))
        failures.run([&] { log("Error", errorParameters("SKPaymentQueue", error)); });
    failures.run([&] {
        if (auto const completion = restoreCompletion_) completion(false, error);
    });
    failures.rethrow();
}

bool PremiumManager::paymentQueueShouldAddStorePayment(SKPaymentQueue& queue, Ref<SKPayment> const& payment,
                                                       Ref<SKProduct> const& product) {
    auto const delegate = delegate_.lock();
    return delegate && delegate->paymentQueueShouldAddStorePayment(queue, payment, product);
}

void PremiumManager::reportPurchase(bool success, Ref<SKPayment> const& payment, bool deferred,
                                    Ref<NSError> const& error) {
    // A copy, because the completion may start the next purchase and replace itself.
    if (auto const completion = buyCompletion_) completion(success, payment, deferred, error);
}

void PremiumManager::reportRestored() {
    FirstException failures;
    failures.run([&] { log("Purchases Restored"); });
    failures.run([&] {
        if (auto const completion = restoreCompletion_) completion(true, nullptr);
    });
    failures.rethrow();
}

void PremiumManager::log(std::string const& name) const {
    if (auto delegate = delegate_.lock()) delegate->logEvent(name);
}

void PremiumManager::log(std::string const& name, EventParameters const& parameters) const {
    if (auto delegate = delegate_.lock()) delegate->logEvent(name, parameters);
}

// Texts

std::string PremiumManager::price(Price const& price) {
    NumberFormatter formatter{price.priceLocale};
    formatter.setNumberStyle(NumberFormatter::Style::currency);
    formatter.setRoundingMode(price.roundingMode);
    formatter.setMaximumFractionDigits(2);
    auto text = formatter.string(price.price / Decimal{price.div});
    if (!text) fatalError("A number formatter gave no text for a price");
    return *std::move(text);
}

std::string PremiumManager::price(SKProduct const& product, int div) {
    return price({.price = product.price(), .priceLocale = product.priceLocale(), .div = div});
}

std::string PremiumManager::price(SKProductDiscount const& discount, SKProduct const& product, int div) {
    return price({.price = discount.price(), .priceLocale = product.priceLocale(), .div = div});
}

std::string PremiumManager::period(Period const& period) {
    auto const text = replacingOccurrences(periodTemplate(period.unit, period.numberOfPeriods), "2",
                                           std::to_string(period.numberOfPeriods));
    return period.capitalizeFirstLetter ? localizedCapitalized(text) : text;
}

std::string PremiumManager::periodTemplate(SKProductPeriodUnit unit, int numberOfPeriods) {
    bool const isSingular = numberOfPeriods == 1;
    switch (unit) {
    case SKProductPeriodUnit::day:
        return Texts::text(isSingular ? "1 day" : "2 days");
    case SKProductPeriodUnit::week:
        return Texts::text(isSingular ? "1 week" : "2 weeks");
    case SKProductPeriodUnit::month:
        return Texts::text(isSingular ? "1 month" : "2 months");
    case SKProductPeriodUnit::year:
        return Texts::text(isSingular ? "1 year" : "2 years");
    }
    return {};
}

} // namespace trelundo
