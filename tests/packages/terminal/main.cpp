// Sells a plan in a terminal. usage: host CATALOGUE.storekit PRODUCT
#include <trelundo/Store.h>

#include <cstdio>

using namespace trelundo;

namespace {

class Host : public NSObject, public PremiumManagerDelegate {
public:
    void premiumManagerDidLoadProducts(Products const& products) override {
        for (auto const& product : products)
            std::printf("%s: %s\n", product->productIdentifier().c_str(),
                        PremiumManager::price(*product).c_str());
    }
};

bool buy(SKProduct const& product) {
    bool isSold = false;
    PremiumManager::sharedInstance().purchase(
        {.payment = make<SKMutablePayment>(product),
         .source = "terminal",
         .screen = {},
         .premiumId = {},
         .abTest = {},
         .completion = [&](bool success, auto&&...) { isSold = success; }});
    RunLoop::main().runUntilIdle();
    return isSold;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) return std::fprintf(stderr, "usage: host CATALOGUE.storekit PRODUCT\n"), 2;
    auto const catalogue = StoreConfiguration::load(argv[1]);
    if (!catalogue) return std::fprintf(stderr, "%s\n", catalogue.error().message.c_str()), 1;
    auto const sandbox = *SandboxStore::open({.configuration = *catalogue});
    SKPaymentQueue::defaultQueue().setBackend(sandbox.get());

    auto const host = make<Host>();
    auto& manager = PremiumManager::sharedInstance();
    manager.setDelegate(host);
    manager.start({argv[2]});
    RunLoop::main().runUntilIdle();
    bool const isSold = !manager.products().empty() && buy(*manager.products().front());
    std::printf("%s\n", isSold ? "sold" : "not sold");
    SKPaymentQueue::defaultQueue().setBackend(nullptr);
    return isSold ? 0 : 1;
}
