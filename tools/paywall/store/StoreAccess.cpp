#include "tools/paywall/store/StoreAccess.h"

#include "tools/paywall/Failure.h"
#include "tools/paywall/demo/Demonstration.h"
#include "tools/paywall/output/Console.h"
#include "tools/paywall/output/MakeFolder.h"
#include "tools/paywall/system/Environment.h"

#include <filesystem>

namespace trelundo::paywall {

namespace {

/// Where a window keeps its purchases between runs.
std::filesystem::path userStoreFile() {
    auto const folder = userDataFolder() / "trelundo-paywall";
    makeFolder(folder);
    return folder / "store.sqlite";
}

std::filesystem::path storeFile(Options const& options) {
    if (options.store) return *options.store;
    return options.command == "show" ? userStoreFile() : std::filesystem::path{};
}

} // namespace

StoreConfiguration loadCatalogue(std::optional<std::string> const& path) {
    auto catalogue =
        valueOrFail(path ? StoreConfiguration::load(*path)
                         : StoreConfiguration::parse(demonstrationCatalogue(), "demonstration catalogue"));
    for (auto const& warning : catalogue.warnings()) complain("warning: " + warning);
    return catalogue;
}

std::unique_ptr<SandboxStore> openSandbox(Options const& options) {
    std::optional<StoreConfiguration> configuration;
    if (options.command != "store") configuration = loadCatalogue(options.catalogue);
    return openSandbox(options, std::move(configuration));
}

std::unique_ptr<SandboxStore> openSandbox(Options const& options,
                                          std::optional<StoreConfiguration> configuration) {
    SandboxStore::Options sandbox{.file = storeFile(options)};
    sandbox.configuration = std::move(configuration);
    static VirtualClock fixedDate;
    if (options.usesFakeClock) sandbox.seed = options.seed;
    // Where nothing is shown, all time is virtual.
    if (options.usesFakeClock && options.command == "show") sandbox.clock = &fixedDate;
    auto store = valueOrFail(SandboxStore::open(std::move(sandbox)));
    store->setCanMakePayments(options.canMakePayments);
    return store;
}

Ref<SKPaymentDiscount> signedDiscount(std::string const& offer) {
    return make<SKPaymentDiscount>(SKPaymentDiscount::Fields{.identifier = offer,
                                                             .keyIdentifier = "SANDBOX",
                                                             .nonce = "00000000-0000-4000-8000-000000000000",
                                                             .signature = "c2FuZGJveA==",
                                                             .timestamp = 1});
}

} // namespace trelundo::paywall
