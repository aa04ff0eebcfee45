#include "trelundo/platform/storekit/sandbox/StoreConfiguration.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

/// What must hold for every configuration, whatever its text.
bool isSound(trelundo::StoreConfiguration const& configuration) {
    for (auto const& each : configuration.products()) {
        auto const& product = *each.product;
        if (configuration.find(product.productIdentifier()) != &each) return false;
        if (product.price().isNaN() || product.price().isNegative()) return false;
        for (auto const& discount : product.discounts()) {
            if (!discount->identifier() || discount->numberOfPeriods() < 1) return false;
            if (discount->subscriptionPeriod().numberOfUnits < 1) return false;
        }
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    auto const loaded =
        trelundo::StoreConfiguration::parse({reinterpret_cast<char const*>(data), size}, "fuzzed");
    if (loaded ? !isSound(*loaded) : loaded.error().message.empty()) std::abort();
    return 0;
}
