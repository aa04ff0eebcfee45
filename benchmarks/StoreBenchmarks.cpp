#include "benchmarks/Comparison.h"
#include "platform/storekit/sandbox/SandboxStore.h"
#include "store/PremiumManager.h"
#include "tools/paywall/Demonstration.h"

#include <filesystem>
#include <random>
#include <sqlite3.h>
#include <unicode/unum.h>

namespace trelundo::bench {
namespace {

/// One price text against the one call of an open formatter that it cannot do without.
void priceText(benchmark::State& state) {
    PremiumManager::Price const price{
        .price = *Decimal::parse("59.99"), .priceLocale = Locale{"en_US@currency=USD"}, .div = 12};
    UErrorCode status = U_ZERO_ERROR;
    auto* formatter = unum_open(UNUM_CURRENCY, nullptr, 0, "en_US@currency=USD", nullptr, &status);
    unum_setAttribute(formatter, UNUM_ROUNDING_MODE, UNUM_ROUND_DOWN);
    char16_t text[64];
    compare(
        state, [&] { benchmark::DoNotOptimize(PremiumManager::price(price)); },
        [&] {
            UErrorCode result = U_ZERO_ERROR;
            unum_formatDecimal(formatter, "4.9991666666666666666666666666666666667", 39, text, 64, nullptr,
                               &result);
            benchmark::DoNotOptimize(text);
        });
    unum_close(formatter);
}

/// 10,000 products, delivered shuffled, into the host's order.
void sortCatalogue(benchmark::State& state) {
    std::vector<std::string> identifiers;
    Products products;
    for (int i = 0; i < 10'000; ++i) {
        identifiers.push_back("product." + std::to_string(i));
        products.push_back(make<SKProduct>(SKProduct::Fields{.productIdentifier = identifiers.back()}));
    }
    std::shuffle(products.begin(), products.end(), std::mt19937{7});
    auto const manager = make<PremiumManager>();
    manager->start(identifiers);
    for ([[maybe_unused]] auto _ : state) {
        manager->productsRequestDidReceive(*manager->productsRequest(), SKProductsResponse{products, {}});
        manager->requestDidFinish(*manager->productsRequest());
    }
}

/// A temporary folder, gone with it.
struct Folder {
    Folder() {
        auto pattern = (std::filesystem::temp_directory_path() / "bench-XXXXXX").string();
        path = mkdtemp(pattern.data());
    }
    ~Folder() { std::filesystem::remove_all(path); }
    std::filesystem::path path;
};

/// Buying and finishing against the three bare commits that it needs, both on a file that is synchronised
/// fully.
void buyAndFinish(benchmark::State& state) {
    Folder folder;
    auto catalogue = StoreConfiguration::parse(paywall::demonstrationCatalogue(), "demonstration catalogue");
    auto opened =
        SandboxStore::open({.file = folder.path / "store.sqlite", .configuration = catalogue.configuration});

    sqlite3* bare = nullptr;
    sqlite3_open((folder.path / "bare.sqlite").c_str(), &bare);
    sqlite3_exec(bare,
                 "PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL; PRAGMA locking_mode=EXCLUSIVE;"
                 "CREATE TABLE t(id INTEGER PRIMARY KEY, product TEXT, state INTEGER, owned INTEGER)",
                 nullptr, nullptr, nullptr);
    compare(
        state,
        [&] {
            auto const key = opened.store->buyAtOnce({.productIdentifier = "app.premium.yearly"});
            if (key) opened.store->finish(*key);
        },
        [&] {
            sqlite3_exec(bare, "INSERT INTO t(product, state) VALUES('app.premium.yearly', 0)", nullptr,
                         nullptr, nullptr);
            sqlite3_exec(bare, "UPDATE t SET state = 1, owned = 1 WHERE id = last_insert_rowid()", nullptr,
                         nullptr, nullptr);
            sqlite3_exec(bare, "UPDATE t SET state = 2 WHERE id = last_insert_rowid()", nullptr, nullptr,
                         nullptr);
        });
    sqlite3_close(bare);
}

BENCHMARK(priceText)->UseManualTime()->Name("price text / bare formatting");
BENCHMARK(sortCatalogue)->Name("10,000 products into host order")->Unit(benchmark::kMillisecond);
BENCHMARK(buyAndFinish)->UseManualTime()->Name("buy and finish / bare commits");

} // namespace
} // namespace trelundo::bench

BENCHMARK_MAIN();
