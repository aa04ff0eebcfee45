#pragma once

#include "trelundo/platform/storekit/StoreBackend.h"
#include "trelundo/platform/storekit/sandbox/SandboxStore.h"

#include <vector>

namespace trelundo::bench {

/// Finishes whatever a store says is over.
class Finisher : public StoreBackendListener {
public:
    explicit Finisher(SandboxStore& store)
        : store_(store) {
        store.setListener(this);
    }
    ~Finisher() override { store_.setListener(nullptr); }
    void transactionsUpdated(std::vector<StoreTransaction> transactions) override {
        for (auto const& each : transactions)
            if (each.state != SKPaymentTransactionState::purchasing && store_.finish(each.key)) ++count;
    }
    void restoreFinished() override {}
    void restoreFailed(Ref<NSError>) override {}
    void promotedPurchase(SKPayment::Fields, Ref<SKProduct>) override {}
    void storefrontChanged() override {}

    int count = 0;

private:
    SandboxStore& store_;
};

} // namespace trelundo::bench
