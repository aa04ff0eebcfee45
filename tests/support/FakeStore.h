#pragma once

#include "tests/support/MainQueue.h"
#include "trelundo/platform/foundation/RunLoop.h"
#include "trelundo/platform/storekit/SKError.h"
#include "trelundo/platform/storekit/SKPaymentQueue.h"
#include "trelundo/platform/storekit/StoreBackend.h"

#include <map>

namespace trelundo::test {

/// A store behind a queue, without opinions: it notes what it is asked, and tells and answers what the test
/// says.
class FakeStore : public StoreBackend {
public:
    explicit FakeStore(SKPaymentQueue& queue = SKPaymentQueue::defaultQueue())
        : queue_(&queue) {
        queue.setBackend(this);
    }
    ~FakeStore() override {
        if (auto const queue = queue_.lock()) queue->setBackend(nullptr);
        clearMainQueue();
    }

    StoreBackendListener* listener = nullptr;
    std::vector<std::string> calls; // "add a", "finish t1", "restore", "synchronize"
    std::vector<SKPayment::Fields> payments;
    std::vector<std::string> finished;
    std::vector<StoreTransaction> waiting; // told when the queue synchronizes
    bool canPay = true;

    /// With a catalogue or an error, requests are answered by themselves; else by the test.
    std::map<std::string, Ref<SKProduct>> catalogue;
    Ref<NSError> loadError;
    std::vector<std::function<void(ProductsResult)>> answers;

    /// A transaction of the product `p` + `key`; without `code` it has no error.
    static StoreTransaction transaction(std::string const& key, SKPaymentTransactionState state,
                                        int code = -1) {
        return {.key = key,
                .payment = {.productIdentifier = "p" + key},
                .state = state,
                .error = code < 0 ? nullptr : makeStoreError(code)};
    }
    void tell(std::vector<StoreTransaction> transactions) const {
        listener->transactionsUpdated(std::move(transactions));
    }
    /// Tells of the last payment and lets the main queue run.
    void report(SKPaymentTransactionState state, Ref<NSError> error = nullptr) const {
        tell({{.key = "t" + std::to_string(payments.size()),
               .payment = payments.back(),
               .state = state,
               .error = std::move(error)}});
        RunLoop::main().runUntilIdle();
    }

    void setListener(StoreBackendListener* heard) override { listener = heard; }
    void loadProducts(std::set<std::string> const& identifiers,
                      std::function<void(ProductsResult)> done) override {
        answers.push_back(done);
        if (catalogue.empty() && !loadError) return;
        ProductsResult result{.error = loadError};
        for (auto const& identifier : identifiers) {
            if (auto const found = catalogue.find(identifier); found != catalogue.end())
                result.products.push_back(found->second);
            else
                result.invalidIdentifiers.push_back(identifier);
        }
        DispatchQueue::main().async([=] { done(result); });
    }
    bool canMakePayments() const override { return canPay; }
    void addPayment(SKPayment::Fields const& payment) override {
        payments.push_back(payment);
        calls.push_back("add " + payment.productIdentifier);
    }
    Result<void> finish(std::string const& key) override {
        finished.push_back(key);
        calls.push_back("finish " + key);
        return {};
    }
    void restore(std::optional<std::string> const& /*applicationUsername*/) override {
        calls.push_back("restore");
    }
    void synchronize() override {
        calls.push_back("synchronize");
        if (!waiting.empty()) tell(waiting);
    }
    std::string storefront() const override { return "FRA"; }

private:
    Weak<SKPaymentQueue> queue_;
};

} // namespace trelundo::test
