#pragma once

#include "tests/support/MainQueue.h"
#include "trelundo/platform/foundation/RunLoop.h"
#include "trelundo/platform/storekit/SKError.h"
#include "trelundo/platform/storekit/SKPaymentQueue.h"
#include "trelundo/platform/storekit/StoreBackend.h"

#include <map>

namespace trelundo::test {

/// A store that records what it is asked and answers what the test says, one main-queue turn later.
class FakeStore : public StoreBackend {
public:
    FakeStore() { SKPaymentQueue::defaultQueue().setBackend(this); }
    ~FakeStore() override {
        SKPaymentQueue::defaultQueue().setBackend(nullptr);
        clearMainQueue();
    }

    std::map<std::string, Ref<SKProduct>> catalogue;
    Ref<NSError> loadError;
    bool mayPay = true;
    std::vector<SKPayment::Fields> payments;
    std::vector<std::string> finished;
    int restores = 0;

    /// Reports one transaction for the last payment and lets the main queue run.
    void report(SKPaymentTransactionState state, Ref<NSError> error = nullptr) {
        StoreTransaction transaction{.key = "t" + std::to_string(payments.size()),
                                     .payment = payments.back()};
        transaction.state = state;
        transaction.error = std::move(error);
        deliver({transaction});
    }
    void deliver(std::vector<StoreTransaction> transactions) {
        listener_->transactionsUpdated(std::move(transactions));
        RunLoop::main().runUntilIdle();
    }
    /// A restore of `count` transactions in one update, then its end.
    void deliverRestored(int count) {
        std::vector<StoreTransaction> restored;
        for (int i = 0; i < count; ++i) {
            restored.push_back({.key = "r" + std::to_string(i), .payment = {.productIdentifier = "yearly"}});
            restored.back().state = SKPaymentTransactionState::restored;
        }
        if (count > 0) listener_->transactionsUpdated(restored);
        listener_->restoreFinished();
        RunLoop::main().runUntilIdle();
    }
    void failRestore(Ref<NSError> error) {
        listener_->restoreFailed(std::move(error));
        RunLoop::main().runUntilIdle();
    }

    void setListener(StoreBackendListener* listener) override { listener_ = listener; }
    void loadProducts(std::set<std::string> const& identifiers,
                      std::function<void(ProductsResult)> done) override {
        ProductsResult result{.error = loadError};
        for (auto const& identifier : identifiers) {
            if (auto const found = catalogue.find(identifier); found != catalogue.end())
                result.products.push_back(found->second);
            else
                result.invalidIdentifiers.push_back(identifier);
        }
        DispatchQueue::main().async([=] { done(result); });
    }
    bool canMakePayments() const override { return mayPay; }
    void addPayment(SKPayment::Fields const& payment) override { payments.push_back(payment); }
    bool finish(std::string const& key) override {
        finished.push_back(key);
        return true;
    }
    void restore(std::optional<std::string> const& /*applicationUsername*/) override { ++restores; }
    void synchronize() override {}
    std::string storefront() const override { return "USA"; }

private:
    StoreBackendListener* listener_ = nullptr;
};

} // namespace trelundo::test
