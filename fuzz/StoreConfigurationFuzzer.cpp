#include "fuzz/Fuzzer.h"
#include "trelundo/platform/storekit/sandbox/StoreConfiguration.h"

using namespace trelundo;

/// A configuration is refused with a reason, or its products have prices and periods that can be sold.
void fuzz::run(std::string_view input) {
    auto const configuration = StoreConfiguration::parse(input, "file");
    if (!configuration) return require(!configuration.error().message.empty());
    for (auto const& each : configuration->products()) {
        auto const& product = *each.product;
        require(configuration->find(product.productIdentifier()) == &each);
        require(!product.price().isNaN() && !product.price().isNegative());
        for (auto const& discount : product.discounts()) {
            require(discount->identifier() && discount->numberOfPeriods() >= 1);
            require(discount->subscriptionPeriod().numberOfUnits >= 1);
        }
    }
}
