#include "benchmarks/Comparison.h"
#include "benchmarks/Finisher.h"
#include "tools/paywall/demo/Demonstration.h"
#include "trelundo/kit/store/PremiumManager.h"
#include "trelundo/platform/foundation/RunLoop.h"
#include "trelundo/platform/storekit/sandbox/SandboxStore.h"

#include <filesystem>
#include <random>
#include <sqlite3.h>
#include <stdexcept>
#include <unicode/unum.h>
#include <unicode/ustring.h>

namespace trelundo::bench {
namespace {

/// An open formatter of the locale library and the two calls to it that a price text cannot do without:
/// formatting the quotient, and turning its characters into UTF-8.
class BareFormatter {
public:
    explicit BareFormatter(char const* locale)
        : formatter_(unum_open(UNUM_CURRENCY, nullptr, 0, locale, nullptr, &status_)) {
        unum_setAttribute(formatter_, UNUM_ROUNDING_MODE, UNUM_ROUND_DOWN);
        unum_setAttribute(formatter_, UNUM_MAX_FRACTION_DIGITS, 2);
    }
    ~BareFormatter() { unum_close(formatter_); }
    BareFormatter(BareFormatter const&) = delete;
    BareFormatter& operator=(BareFormatter const&) = delete;

    void operator()(std::string_view number) {
        status_ = U_ZERO_ERROR;
        char16_t text[64];
        char utf8[128];
        auto const length = unum_formatDecimal(formatter_, number.data(), static_cast<int32_t>(number.size()),
                                               text, 64, nullptr, &status_);
        u_strToUTF8(utf8, 128, nullptr, text, length, &status_);
        benchmark::DoNotOptimize(utf8);
    }

private:
    UErrorCode status_ = U_ZERO_ERROR;
    UNumberFormat* formatter_;
};

/// For what is so short that reading the clock would count.
template <class Work> void hundredTimes(Work work) {
    for (int i = 0; i < 100; ++i) work();
}

void priceText(benchmark::State& state, int divisor) {
    auto const locale = "en_US@currency=USD";
    PremiumManager::Price const price{
        .price = *Decimal::parse("59.99"), .priceLocale = Locale{locale}, .div = divisor};
    BareFormatter formatter{locale};
    auto const number = (price.price / Decimal{divisor}).description();
    compare(
        state, [&] { hundredTimes([&] { benchmark::DoNotOptimize(PremiumManager::price(price)); }); },
        [&] { hundredTimes([&] { formatter(number); }); });
}

/// 10,000 products, delivered shuffled, into the host's order.
void sortCatalogue(benchmark::State& state) {
    std::vector<std::string> identifiers;
    Products products;
    for (int i = 0; i < 10'000; ++i) {
        identifiers.push_back("product." + std::to_string(i));
        products.push_back(make<SKProduct>(SKProduct::Fields{.productIdentifier = identifiers.back()}));
    }
    std::ranges::shuffle(products, std::mt19937{7});
    auto const manager = make<PremiumManager>();
    manager->start(identifiers);
    measure(state, [&] {
        manager->productsRequestDidReceive(*manager->productsRequest(), SKProductsResponse{products, {}});
        manager->requestDidFinish(*manager->productsRequest());
    });
    if (manager->products().size() != identifiers.size()) throw std::runtime_error("products are missing");
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

/// The three commits of a purchase, on a bare database that is synchronised fully.
class BareCommits {
public:
    explicit BareCommits(std::string const& file) {
        sqlite3_open(file.c_str(), &database_);
        run("PRAGMA journal_mode=WAL");
        run("PRAGMA synchronous=FULL");
        run("PRAGMA locking_mode=EXCLUSIVE");
        run("CREATE TABLE t(id INTEGER PRIMARY KEY, product TEXT, state INTEGER, owned INTEGER)");
    }
    ~BareCommits() { sqlite3_close(database_); }
    BareCommits(BareCommits const&) = delete;
    BareCommits& operator=(BareCommits const&) = delete;

    void operator()() {
        run("INSERT INTO t(product, state) VALUES('app.premium.yearly', 0)");
        run("UPDATE t SET state = 1, owned = 1 WHERE id = last_insert_rowid()");
        run("UPDATE t SET state = 2 WHERE id = last_insert_rowid()");
    }

private:
    void run(char const* statement) {
        if (sqlite3_exec(database_, statement, nullptr, nullptr, nullptr) != SQLITE_OK)
            throw std::runtime_error(sqlite3_errmsg(database_));
    }
    sqlite3* database_ = nullptr;
};

void buyAndFinish(benchmark::State& state) {
    Folder const folder;
    auto const catalogue =
        StoreConfiguration::parse(paywall::demonstrationCatalogue(), "demonstration catalogue");
    auto const store =
        *SandboxStore::open({.file = folder.path / "store.sqlite", .configuration = *catalogue});
    Finisher finisher{*store};
    BareCommits bare{folder.path / "bare.sqlite"};
    auto const buy = [&] {
        auto const before = finisher.count;
        store->addPayment({.productIdentifier = "app.premium.yearly"});
        RunLoop::main().runUntilIdle();
        if (finisher.count == before) throw std::runtime_error("the sandbox did not sell");
    };
    compare(state, buy, [&] { bare(); });
}

[[maybe_unused]] bool const added = [] {
    addRow(50, "10,000 products into host order", milliseconds(20), sortCatalogue);
    addRow(51, "100 price texts / bare formatting", times(1.3),
           [](benchmark::State& state) { priceText(state, 1); });
    addRow(52, "100 price texts of a twelfth / bare formatting", times(1.3),
           [](benchmark::State& state) { priceText(state, 12); });
    addRow(53, "buy and finish / bare commits", times(1.5), buyAndFinish);
    return true;
}();

} // namespace
} // namespace trelundo::bench
