#include "tests/platform/storekit/StoreTestSupport.h"

#include "trelundo/platform/storekit/sandbox/StoreConfiguration.h"

#include <clocale>
#include <fstream>
#include <gmock/gmock.h>

namespace trelundo {
namespace {

using testing::StartsWith;
using Unit = SKProductPeriodUnit;

/// The configuration of a text that must be one.
StoreConfiguration read(std::string const& text, StoreConfiguration::Options const& options = {}) {
    return *StoreConfiguration::parse(text, "shop", options);
}

StoreConfiguration readProduct(std::string const& members) {
    return read(R"({"products": [{"productID": "p", "type": "NonConsumable", )" + members + "}]}");
}

StoreConfiguration readSubscription(std::string const& members) {
    return read(
        R"({"subscriptionGroups": [{"id": "G", "subscriptions": [{"productID": "s", "displayPrice": "4.99",
        "recurringSubscriptionPeriod": "P1M", "type": "RecurringSubscription", )" +
        members + "}]}]}");
}

Ref<SKProduct> first(StoreConfiguration const& configuration) {
    return configuration.products().empty() ? make<SKProduct>(SKProduct::Fields{})
                                            : configuration.products().front().product;
}

std::string describe(Ref<SKProductDiscount> const& discount) {
    if (!discount) return "none";
    static constexpr char units[] = {'D', 'W', 'M', 'Y'};
    auto const period = discount->subscriptionPeriod();
    return discount->identifier().value_or("-") + " mode " +
           std::to_string(static_cast<int>(discount->paymentMode())) + " " + discount->price().description() +
           " P" + std::to_string(period.numberOfUnits) + units[static_cast<int>(period.unit)] + " x" +
           std::to_string(discount->numberOfPeriods());
}

/// The promotional offer that has the given members.
std::string offerOf(std::string const& members) {
    auto const configuration =
        readSubscription(R"("adHocOffers": [{"paymentMode": "free", )" + members + "}]");
    auto const& discounts = first(configuration)->discounts();
    EXPECT_FALSE(discounts.empty() && configuration.warnings().empty()) << members;
    return describe(discounts.empty() ? nullptr : discounts.front());
}

TEST(StoreConfigurationTest, ReadsASubscriptionWithItsOffers) {
    auto const configuration = readSubscription(R"("subscriptionGroupID": "OWN", "familyShareable": true,
        "introductoryOffer": {"paymentMode": "free", "subscriptionPeriod": "P3M", "displayPrice": "0.99"},
        "adHocOffers": [
          {"offerID": "year", "paymentMode": "payUpFront", "subscriptionPeriod": "P1Y", "displayPrice": "40.99"},
          {"offerID": "months", "paymentMode": "payAsYouGo", "subscriptionPeriod": "P1M", "numberOfPeriods": 2,
           "displayPrice": "20.15"}],
        "codeOffers": [{"paymentMode": "free"}], "winbackOffers": 7, "groupNumber": 1,
        "localizations": [{"locale": "en_US", "displayName": "Title", "description": "Text"}])");
    auto const product = first(configuration);
    EXPECT_EQ(configuration.subscriptionIdentifiers(), Lines{"s"});
    EXPECT_EQ(product->localizedTitle(), "Title");
    EXPECT_EQ(product->localizedDescription(), "Text");
    EXPECT_EQ(product->price().description(), "4.99");
    EXPECT_EQ(product->priceLocale().identifier(), "en_US@currency=USD");
    EXPECT_TRUE(product->subscriptionPeriod()->is(1, Unit::month));
    EXPECT_EQ(product->subscriptionGroupIdentifier(), "OWN");
    EXPECT_TRUE(product->isFamilyShareable());
    EXPECT_EQ(describe(product->introductoryPrice()), "- mode 2 0 P3M x1") << "a free trial costs nothing";
    ASSERT_EQ(product->discounts().size(), 2U);
    EXPECT_EQ(describe(product->discounts()[0]), "year mode 1 40.99 P1Y x1");
    EXPECT_EQ(describe(product->discounts()[1]), "months mode 0 20.15 P1M x2");
    EXPECT_EQ(product->discounts()[1]->type(), SKProductDiscountType::subscription);
    EXPECT_EQ(configuration.warnings(), Lines{});
}

TEST(StoreConfigurationTest, KeepsTheOrderOfTheFileAndTellsKindsApart) {
    auto const configuration = read(R"({
        "subscriptionGroups": [{}, {"subscriptions": []}, {"id": "G", "subscriptions": [
            {"productID": "z", "displayPrice": "1", "recurringSubscriptionPeriod": "P7D"}]}],
        "nonRenewingSubscriptions": [{"productID": "n", "displayPrice": "1", "type": "NonRenewingSubscription"}],
        "products": [
            {"productID": "c", "displayPrice": "1", "type": "Consumable"},
            {"productID": "a", "displayPrice": "1", "type": "nonConsumable"},
            {"productID": "b", "displayPrice": "1", "type": "auto-renewable-subscription"},
            {"productID": "c", "displayPrice": "2", "type": "Consumable"},
            {"productID": "line\n", "displayPrice": "1", "type": "Other"},
            {"displayPrice": "1"}, 5, null]})");
    std::string kinds;
    for (auto const& each : configuration.products())
        kinds += each.product->productIdentifier() + std::to_string(static_cast<int>(each.kind)) +
                 (each.isRestorable() ? "! " : " ");
    EXPECT_EQ(kinds, "z3! n2 c0 a1! b1! line\n1! ");
    EXPECT_EQ(configuration.find("c")->product->price(), Decimal{1}) << "the first of two wins";
    EXPECT_EQ(configuration.find("line"), nullptr) << "identifiers match exactly";
    EXPECT_EQ(configuration.find("z")->product->subscriptionPeriod(),
              (SKProductSubscriptionPeriod{7, Unit::day}));
    EXPECT_EQ(configuration.find("z")->product->subscriptionGroupIdentifier(), "G");
    EXPECT_EQ(configuration.find("n")->product->subscriptionPeriod(), std::nullopt);
    EXPECT_EQ(configuration.warnings().size(), 6U);
    EXPECT_EQ(configuration.warnings().front(),
              "shop: product \"b\": key \"recurringSubscriptionPeriod\": no period; "
              "the product becomes a one-time purchase");
}

TEST(StoreConfigurationTest, ReadsPricesExactly) {
    auto const read = [](std::string const& price) { return readProduct("\"displayPrice\": " + price); };
    for (auto const& [price, expected] :
         {std::pair{R"("4.99")", "4.99"},
          {R"("49.00")", "49"},
          {R"("0.0")", "0"},
          {"39.99", "39.99"},
          {"0.1000000000000000055511151231257827", "0.1000000000000000055511151231257827"},
          {"1e2", "100"},
          {"125E-2", "1.25"}})
        EXPECT_EQ(first(read(price))->price().description(), expected);
    for (auto const* price :
         {"\"\"", "\"-1\"", "-1", "\"$5\"", "\"1,5\"", "1e300", "null", "true", "\"1e\"", "\"NaN\""}) {
        EXPECT_EQ(read(price).products().size(), 0U) << price;
        EXPECT_EQ(read(price).warnings().size(), 1U) << price;
    }
}

TEST(StoreConfigurationTest, ReadsPeriodsAsWritten) {
    auto const read = [](std::string const& period) {
        return offerOf(R"("offerID": "o", "subscriptionPeriod": ")" + period + "\"");
    };
    for (std::string const text : {"P3D", "P1W", "P12M", "P2Y", "P30D"})
        EXPECT_EQ(read(text), "o mode 2 0 " + text + " x1");
    for (auto const* text : {"P0D", "P", "P-1M", "P1M1D", "PT1M", "P99999999999Y", "1M", ""})
        EXPECT_EQ(read(text), "none") << text;
}

TEST(StoreConfigurationTest, ChoosesTheIntroductoryOffer) {
    std::string const monthly =
        R"({"paymentMode": "free", "subscriptionPeriod": "P1M", "billingPlanType": "MONTHLY"})";
    std::string const upFront =
        R"({"paymentMode": "free", "subscriptionPeriod": "P2W", "billingPlanType": "BILLED_UPFRONT"})";
    std::string const unpriced =
        R"({"paymentMode": "payUpFront", "subscriptionPeriod": "P1Y", "displayPrice": ""})";
    std::string const none = R"({"paymentMode": "none", "displayPrice": "1"})";
    auto const chosen = [](std::string const& members) {
        return describe(first(readSubscription(members))->introductoryPrice());
    };
    EXPECT_EQ(chosen(R"("introductoryOffer": null)"), "none");
    EXPECT_EQ(chosen(R"("introductoryOffers": [)" + monthly + "," + upFront + "]"), "- mode 2 0 P2W x1");
    EXPECT_EQ(chosen(R"("introductoryOffer": )" + monthly + R"(, "introductoryOffers": [)" + upFront + "]"),
              "- mode 2 0 P2W x1");
    EXPECT_EQ(chosen(R"("introductoryOffers": [)" + monthly + "]"), "- mode 2 0 P1M x1");
    EXPECT_EQ(chosen(R"("introductoryOffer": )" + unpriced), "none") << "without price it would look free";
    EXPECT_EQ(chosen(R"("introductoryOffer": )" + none), "none");
    EXPECT_EQ(chosen(R"("introductoryOffer": [)" + upFront + "]"), "- mode 2 0 P2W x1");
}

TEST(StoreConfigurationTest, ToleratesOffersWithoutIdentifierOrNumberOfPeriods) {
    std::string const week = R"("subscriptionPeriod": "P1W")";
    EXPECT_EQ(offerOf(week), "- mode 2 0 P1W x1");
    EXPECT_EQ(offerOf(week + R"(, "offerID": "")"), "none");
    for (auto const& [number, expected] : {std::pair{"3", "3"},
                                           {"\"5\"", "5"},
                                           {"null", "1"},
                                           {"0", "1"},
                                           {"-2", "1"},
                                           {"1.5", "1"},
                                           {"99999999999", "1"},
                                           {"[]", "1"}})
        EXPECT_EQ(offerOf(week + R"(, "numberOfPeriods": )" + number),
                  std::string{"- mode 2 0 P1W x"} + expected)
            << number;
}

TEST(StoreConfigurationTest, ChoosesALocalisation) {
    struct {
        char const* locale;
        std::vector<std::string> offered;
        char const* title;
    } const rows[] = {
        {"fr", {"en_US", "fr"}, "is fr"},
        {"zh_CN", {"zh_Hant", "zh_Hans"}, "is zh_Hans"},
        {"zh_TW", {"en_US", "zh_Hans"}, "is zh_Hans"}, // better than another language
        {"es_MX", {"en_US", "es_ES"}, "is es_ES"},
        {"de", {"fr", "en_US"}, "is en_US"},
        {"de", {"ru", "ko"}, "is ru"},
        {"de", {}, "own"}, // hand-made files put the texts on the product
    };
    for (auto const& row : rows) {
        std::string list;
        for (auto const& locale : row.offered)
            list.append(list.empty() ? "" : ",")
                .append(R"({"locale": ")")
                .append(locale)
                .append(R"(", "displayName": "is )")
                .append(locale)
                .append("\"}");
        auto const configuration =
            read(std::string{R"({"settings": {"_locale": ")"} + row.locale +
                 R"("}, "products": [{"productID": "p", "displayPrice": "1", "displayName": "own",
                 "localizations": [)" +
                 list + "]}]}");
        EXPECT_EQ(first(configuration)->localizedTitle(), row.title) << row.locale << " of " << list;
    }
}

TEST(StoreConfigurationTest, BuildsThePriceLocaleFromLanguageAndStorefront) {
    for (auto const& [storefront, locale, expected] : {std::tuple{"PRT", "en_US", "en_PT@currency=EUR"},
                                                       {"CHN", "zh_Hans", "zh_Hans_CN@currency=CNY"},
                                                       {"UKR", "uk", "uk_UA@currency=USD"},
                                                       {"ZZZ", "en_US", "en_US@currency=USD"},
                                                       {"", "en_US", "en_US@currency=USD"},
                                                       {"SGP", "", "en_SG@currency=SGD"}}) {
        auto const configuration =
            read(std::string{R"({"settings": {"_storefront": ")"} + storefront + R"(", "_locale": ")" +
                 locale + R"("}, "products": [{"productID": "p", "displayPrice": "1"}]})");
        EXPECT_EQ(first(configuration)->priceLocale().identifier(), Locale{expected}.identifier());
        EXPECT_EQ(configuration.warnings().size(), std::string{storefront} == "ZZZ" ? 1U : 0U);
    }
}

TEST(StoreConfigurationTest, ReadsSettings) {
    auto const settings =
        read(R"({"products": [], "settings": {"_askToBuyEnabled": true, "_failTransactionsEnabled": true,
        "_storeKitError": 3, "_timeRate": 5, "_compatibilityTimeRate": {"3": 6}, "_lastSynchronizedDate": "text",
        "_storefront": "FRA", "_locale": "fr", "_storeKitErrors": [
            {"name": "Load Products", "enabled": true}, {"name": "Purchase", "enabled": false, "current": {"index": 1}},
            {"name": "App Store Sync", "enabled": true, "current": null}, 7]}})")
            .settings();
    EXPECT_TRUE(settings.asksToBuy);
    EXPECT_TRUE(settings.failsTransactions);
    EXPECT_EQ(settings.transactionError, 3);
    EXPECT_TRUE(settings.failsLoadingProducts);
    EXPECT_TRUE(settings.failsRestoring);
    EXPECT_EQ(settings.storefront, "FRA");
    auto const other =
        read(R"({"products": [], "settings": {"_storeKitErrors": [{"name": "Purchase", "enabled": true}]}})")
            .settings();
    EXPECT_TRUE(other.failsTransactions);
    EXPECT_FALSE(other.asksToBuy || other.failsLoadingProducts || other.failsRestoring);
    EXPECT_EQ(read(R"({"products": [], "settings": []})").warnings().size(), 1U);
    auto const noLocale =
        read(R"({"products": [], "settings": {"_locale": ")" + std::string(1000, 'a') + R"("}})");
    EXPECT_EQ(noLocale.settings().locale, "en_US");
    EXPECT_THAT(noLocale.warnings(), testing::ElementsAre(StartsWith("shop: key \"_locale\"")));
}

TEST(StoreConfigurationTest, OptionsReplaceTheLocaleAndGiveEmptyPeriods) {
    auto const configuration =
        read(R"({"products": [{"productID": "p", "displayPrice": "1", "localizations": [
        {"locale": "en_US", "displayName": "one"}, {"locale": "de", "displayName": "eins"}]}]})",
             {.locale = "de_AT", .givesZeroUnitPeriods = true});
    EXPECT_EQ(first(configuration)->localizedTitle(), "eins");
    EXPECT_EQ(first(configuration)->priceLocale().identifier(), Locale{"de_US@currency=USD"}.identifier());
    EXPECT_EQ(first(configuration)->subscriptionPeriod(), SKProductSubscriptionPeriod{});
}

TEST(StoreConfigurationTest, AllowsMarksAndCommentsInEveryProcessLocale) {
    auto const* const previous = std::setlocale(LC_NUMERIC, "de_DE.UTF-8");
    auto const configuration =
        read("\xEF\xBB\xBF{\r\n // a comment\r\n \"products\": [ /* another */ {\"id\": \"premium\", "
             "\"price\": 39.99}]\r\n}\r\n");
    std::setlocale(LC_NUMERIC, "C");
    EXPECT_EQ(first(configuration)->price().description(), "39.99")
        << (previous ? previous : "locale not installed");
}

TEST(StoreConfigurationTest, NamesFileLineOrKeyOfWhatItCannotRead) {
    std::string tooMany = "[0";
    for (int i = 0; i < 1'000'000; ++i) tooMany += ",0";
    struct {
        std::string text;
        testing::Matcher<std::string> error;
    } const rows[] = {
        {"{\n\"a\": 1\n\"b\": 2}", StartsWith("shop:3: not a StoreKit configuration: syntax error")},
        {"{\n<<<<<<< HEAD\n}", StartsWith("shop:2: not a StoreKit configuration")},
        {"", StartsWith("shop:1:")},
        {"[]", StartsWith("shop:1: not a StoreKit configuration: an object")},
        {"{} {}", StartsWith("shop:1:")},
        {"{\"a\": 1e999}", StartsWith("shop:1:")},
        {R"({"title": "Shop"})", StartsWith("shop: not a StoreKit configuration: none of \"products\"")},
        {R"({"products": {}})", "shop: key \"products\": a list is expected"},
        {"\n" + std::string(65, '['), "shop:2: not a StoreKit configuration: nested deeper than 64 levels"},
        {std::string(9'000'000, ' '), "shop: larger than 8 MB"},
        {tooMany + "]", "shop:1: not a StoreKit configuration: more than a million values"},
    };
    for (auto const& [text, error] : rows)
        EXPECT_THAT(StoreConfiguration::parse(text, "shop").error().message, error) << text.substr(0, 40);
}

TEST(StoreConfigurationTest, TellsEveryKeyOfAnotherTypeAndPricesThatEndThePaywalls) {
    auto const told =
        read(R"({"settings": {"_askToBuyEnabled": "yes"}, "subscriptionGroups": [7, {"subscriptions": {}}],
        "products": [{"productID": "p", "displayPrice": "0", "adHocOffers": "none", "localizations": [1]}]})")
            .warnings();
    auto const expected = {"key \"_askToBuyEnabled\": true or false is expected",
                           "key \"subscriptions\": a list is expected",
                           "product \"p\": key \"adHocOffers\": a list is expected",
                           "product \"p\": key \"localizations\": an object is expected in the list",
                           "a subscription group that is no object is left out",
                           "product \"p\": key \"displayPrice\": offers, and paywalls"};
    for (auto const* each : expected)
        EXPECT_THAT(told, testing::Contains(StartsWith(std::string{"shop: "} + each)));
    EXPECT_EQ(told.size(), expected.size());
}

TEST(StoreConfigurationTest, LoadsFilesAndFolders) {
    TemporaryFolder const folder;
    std::ofstream{folder / "Configuration.storekit"}
        << R"({"products": [{"productID": "p", "displayPrice": "1"}]})";
    std::ofstream{folder / "broken.storekit"} << "{";
    auto const errorOf = [](std::filesystem::path const& path) {
        return StoreConfiguration::load(path).error().message;
    };
    EXPECT_EQ(first(*StoreConfiguration::load(folder.path()))->productIdentifier(), "p");
    EXPECT_TRUE(StoreConfiguration::load(folder / "Configuration.storekit"));
    EXPECT_THAT(errorOf(folder / "broken.storekit"), StartsWith(folder.path().string()));
    EXPECT_EQ(errorOf(folder / "none"), (folder / "none").string() + ": no such file");
    EXPECT_EQ(errorOf("/dev/null"), "/dev/null: cannot be read (not a file)");
}

} // namespace
} // namespace trelundo
