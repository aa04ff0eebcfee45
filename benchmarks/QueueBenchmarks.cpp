#include "benchmarks/Comparison.h"
#include "benchmarks/Finisher.h"
#include "trelundo/platform/foundation/RunLoop.h"
#include "trelundo/platform/storekit/SKPaymentQueue.h"
#include "trelundo/platform/storekit/sandbox/SandboxStore.h"

#include <stdexcept>

namespace trelundo::bench {
namespace {

constexpr int many = 100'000;
constexpr int restores = 1'000;

/// A store whose earlier runs have left purchases behind.
class LeftoverStore : public StoreBackend {
public:
    explicit LeftoverStore(int count)
        : count_(count) {}

    void setListener(StoreBackendListener* listener) override { listener_ = listener; }
    void loadProducts(std::set<std::string> const&, std::function<void(ProductsResult)>) override {}
    bool canMakePayments() const override { return true; }
    void addPayment(SKPayment::Fields const&) override {}
    Result<void> finish(std::string const&) override { return {}; }
    void restore(std::optional<std::string> const&) override {}
    void synchronize() override {
        std::vector<StoreTransaction> leftovers(static_cast<std::size_t>(count_));
        for (int i = 0; i < count_; ++i)
            leftovers[static_cast<std::size_t>(i)] = {.key = std::to_string(i),
                                                      .payment = {.productIdentifier = "plan"},
                                                      .state = SKPaymentTransactionState::purchased};
        listener_->transactionsUpdated(std::move(leftovers));
    }
    std::string storefront() const override { return "USA"; }

private:
    int count_;
    StoreBackendListener* listener_ = nullptr;
};

class Collector : public NSObject, public SKPaymentTransactionObserver {
public:
    void paymentQueueUpdatedTransactions(SKPaymentQueue&, SKPaymentTransactions const& updated) override {
        all = updated;
    }
    SKPaymentTransactions all;
};

/// A queue is handed its leftovers and finishes them, one in each turn.
void finishLeftovers(int count) {
    LeftoverStore store{count};
    auto const queue = make<SKPaymentQueue>();
    auto const collector = make<Collector>();
    queue->setBackend(&store);
    queue->addTransactionObserver(collector);
    RunLoop::main().runUntilIdle();
    for (auto const& transaction : collector->all) {
        queue->finishTransaction(transaction);
        RunLoop::main().runTurn();
    }
    if (!queue->transactions().empty()) throw std::runtime_error("some were not finished");
}

/// A sandbox in memory that has sold one plan and `sales` - 1 times coins.
struct BusyStore {
    explicit BusyStore(int sales)
        : store(*SandboxStore::open({.configuration = *StoreConfiguration::parse(
                                         R"({"products": [
            {"productID": "plan", "displayPrice": "9.99", "type": "NonConsumable"},
            {"productID": "coins", "displayPrice": "0.99", "type": "Consumable"}]})",
                                         "shop")})) {
        store->addPayment({.productIdentifier = "plan"});
        for (int i = 1; i < sales; ++i) store->addPayment({.productIdentifier = "coins"});
        RunLoop::main().runUntilIdle();
    }
    void restore() {
        auto const before = finisher.count;
        store->restore(std::nullopt);
        RunLoop::main().runUntilIdle();
        if (finisher.count != before + 1) throw std::runtime_error("the plan was not restored");
    }

    std::unique_ptr<SandboxStore> store;
    Finisher finisher{*store};
};

[[maybe_unused]] bool const added = [] {
    addRow(54, "finishing 100,000 leftovers / twice 50,000", times(1.3), [](benchmark::State& state) {
        compare(
            state, [] { finishLeftovers(many); },
            [] {
                finishLeftovers(many / 2);
                finishLeftovers(many / 2);
            });
    });
    addRow(55, "a restore among 100,000 transactions", milliseconds(100), [](benchmark::State& state) {
        BusyStore busy{many};
        measure(state, [&] { busy.restore(); });
    });
    addRow(56, "the thousandth restore / the first", times(1.2), [](benchmark::State& state) {
        BusyStore used{restores};
        for (int i = 0; i < restores; ++i) used.restore();
        auto const fresh = std::make_unique<BusyStore>(restores);
        compare(
            state, [&] { used.restore(); }, [&] { fresh->restore(); });
    });
    return true;
}();

} // namespace
} // namespace trelundo::bench
