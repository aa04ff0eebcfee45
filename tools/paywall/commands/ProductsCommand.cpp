#include "tools/paywall/Failure.h"
#include "tools/paywall/commands/Commands.h"
#include "tools/paywall/output/Json.h"
#include "tools/paywall/output/Names.h"
#include "tools/paywall/store/StoreAccess.h"
#include "trelundo/kit/store/PremiumManager.h"
#include "trelundo/platform/foundation/RunLoop.h"
#include "trelundo/platform/storekit/SKPaymentQueue.h"

#include "tools/paywall/output/Console.h"
#include <algorithm>
#include <array>
#include <fmt/core.h>
#include <set>

namespace trelundo::paywall {

namespace {

Json toJson(SKProductSubscriptionPeriod const& period) {
    return {{"unit", nameOf(period.unit)}, {"numberOfUnits", period.numberOfUnits}};
}

std::string periodText(SKProductSubscriptionPeriod const& period, bool capitalize) {
    return PremiumManager::period(
        {.unit = period.unit, .numberOfPeriods = period.numberOfUnits, .capitalizeFirstLetter = capitalize});
}

Json toJson(SKProductDiscount const& discount, SKProduct const& product) {
    return {{"identifier", orNull(discount.identifier())},
            {"paymentMode", nameOf(discount.paymentMode())},
            {"price", discount.price().description()},
            {"priceText", PremiumManager::price(discount, product)},
            {"subscriptionPeriod", toJson(discount.subscriptionPeriod())},
            {"numberOfPeriods", discount.numberOfPeriods()},
            {"periodText", periodText(discount.subscriptionPeriod(), false)}};
}

Json toJson(SKProduct const& product) {
    auto const& period = product.subscriptionPeriod();
    Json discounts = Json::array();
    for (auto const& discount : product.discounts()) discounts.push_back(toJson(*discount, product));
    auto const introductory = product.introductoryPrice();
    return {{"productIdentifier", product.productIdentifier()},
            {"localizedTitle", product.localizedTitle()},
            {"localizedDescription", product.localizedDescription()},
            {"price", product.price().description()},
            {"priceLocale", product.priceLocale().identifier()},
            {"currency", product.priceLocale().currencyCode()},
            {"priceText", PremiumManager::price(product)},
            {"perMonthText", PremiumManager::price(product, 12)},
            {"perWeekText", PremiumManager::price(product, 52)},
            {"subscriptionPeriod", period ? toJson(*period) : Json(nullptr)},
            {"periodText", period ? Json(periodText(*period, false)) : Json(nullptr)},
            {"periodTextCapitalized", period ? Json(periodText(*period, true)) : Json(nullptr)},
            {"introductoryPrice", introductory ? toJson(*introductory, product) : Json(nullptr)},
            {"discounts", discounts}};
}

void printTable(Products const& products) {
    std::array<std::size_t, 5> widths{};
    std::vector<std::array<std::string, 5>> rows{{"product", "price", "per month", "per week", "period"}};
    for (auto const& product : products) {
        auto const& period = product->subscriptionPeriod();
        rows.push_back({product->productIdentifier(), PremiumManager::price(*product),
                        PremiumManager::price(*product, 12), PremiumManager::price(*product, 52),
                        period ? periodText(*period, false) : std::string{"-"}});
    }
    for (auto const& row : rows)
        for (std::size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], fmt::formatted_size("{}", row[i]));
    for (auto const& row : rows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) line += fmt::format("{:<{}}  ", row[i], widths[i]);
        line.erase(line.find_last_not_of(' ') + 1);
        printLine(line);
    }
}

/// Each of `wanted` once, without those that came.
std::vector<std::string> missingIdentifiers(std::vector<std::string> const& wanted,
                                            Products const& products) {
    std::set<std::string> seen;
    for (auto const& product : products) seen.insert(product->productIdentifier());
    std::vector<std::string> missing;
    for (auto const& identifier : wanted)
        if (seen.insert(identifier).second) missing.push_back(identifier);
    return missing;
}

/// Hears how the load ended.
class LoadListener : public NSObject, public PremiumManagerDelegate {
public:
    using PremiumManagerDelegate::logEvent;
    void logEvent(std::string const& /*name*/, EventParameters const& parameters) override {
        auto const error = parameters.find("Error");
        if (error != parameters.end()) error_ = error->second;
    }
    void premiumManagerDidLoadProducts(Products const& /*products*/) override {}

    /// Absent when the store answered: only an answer tells which identifiers are unknown.
    std::optional<std::string> const& error() const { return error_; }

private:
    std::optional<std::string> error_;
};

void printState(PremiumManager const& manager, std::vector<std::string> const& missing, bool asJson) {
    if (asJson) {
        for (auto const& product : manager.products()) printLine(toText(toJson(*product)));
        printLine(toText({{"state", nameOf(manager.state())}, {"invalidProductIdentifiers", missing}}));
        return;
    }
    printTable(manager.products());
    for (auto const& identifier : missing) printLine("not in the catalogue: " + identifier);
    printLine(fmt::format("state: {}", nameOf(manager.state())));
}

} // namespace

int printProducts(Options const& options) {
    Locale::setPreferredLanguages({options.language});
    auto const store = openSandbox(options);
    SKPaymentQueue::defaultQueue().setBackend(store.get());
    auto& manager = PremiumManager::sharedInstance();
    auto const listener = make<LoadListener>();
    manager.setDelegate(listener);
    manager.start(options.products.value_or(store->configuration().subscriptionIdentifiers()));
    RunLoop::main().runUntilIdle();

    std::vector<std::string> missing;
    if (listener->error())
        complain("warning: the products could not be loaded: " + *listener->error());
    else
        missing = missingIdentifiers(manager.productIdentifiers(), manager.products());
    printState(manager, missing, options.printsJson);
    SKPaymentQueue::defaultQueue().setBackend(nullptr);
    return statusOk;
}

} // namespace trelundo::paywall
