// Sells in a terminal: lists the plans, asks for one, buys it. usage: terminal_host CATALOGUE.storekit
// PRODUCT...
#include <trelundo/Store.h>

#include <cstdio>
#include <iostream>
#include <string>

using namespace trelundo;

namespace {

class Host : public NSObject, public PremiumManagerDelegate {
public:
    void premiumManagerDidLoadProducts(Products const& products) override {
        int number = 0;
        for (auto const& product : products)
            std::printf("%d. %s, %s\n", ++number, product->localizedTitle().c_str(),
                        PremiumManager::price(*product).c_str());
    }
};

/// The plan that the user asks for by its number; null for anything else.
Ref<SKProduct> chosenPlan() {
    std::printf("Which? ");
    std::size_t number = 0;
    auto const& products = PremiumManager::sharedInstance().products();
    return std::cin >> number && number >= 1 && number <= products.size() ? products[number - 1] : nullptr;
}

/// Turns the main loop until the store has answered, which the embedded one does without waiting for anybody.
bool buy(SKProduct const& product) {
    bool isSold = false;
    PremiumManager::sharedInstance().purchase(
        {.payment = make<SKMutablePayment>(product),
         .source = "terminal",
         .screen = "list",
         .premiumId = {},
         .abTest = {},
         .completion = [&](bool success, auto&&...) { isSold = success; }});
    RunLoop::main().runUntilIdle();
    return isSold;
}

int sell() {
    auto const product = chosenPlan();
    if (!product) return std::puts("Nothing was chosen."), 1;
    bool const isSold = buy(*product);
    std::printf("%s: %s\n", isSold ? "sold" : "not sold", product->productIdentifier().c_str());
    return isSold ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 3) return std::fprintf(stderr, "usage: terminal_host CATALOGUE.storekit PRODUCT...\n"), 2;
    auto const catalogue = StoreConfiguration::load(argv[1]);
    if (!catalogue) return std::fprintf(stderr, "%s\n", catalogue.error().message.c_str()), 1;
    auto const sandbox = SandboxStore::open({.configuration = *catalogue});
    if (!sandbox) return std::fprintf(stderr, "%s\n", sandbox.error().message.c_str()), 1;
    SKPaymentQueue::defaultQueue().setBackend(sandbox->get());

    auto const host = make<Host>();
    PremiumManager::sharedInstance().setDelegate(host);
    PremiumManager::sharedInstance().start({argv + 2, argv + argc});
    RunLoop::main().runUntilIdle();
    auto const status = sell();
    SKPaymentQueue::defaultQueue().setBackend(nullptr);
    return status;
}
