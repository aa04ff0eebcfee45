#include "tests/tools/paywall/Program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace trelundo::paywall::test {
namespace {

using testing::HasSubstr;
using testing::Not;

std::string list(std::string const& settings, std::string const& products) {
    TemporaryFolder const folder;
    auto const path = writeText(folder / "Shop.storekit", R"({"settings": )" + settings + R"(, "products": [
        {"productID": "coins", "displayPrice": "0.99", "type": "Consumable"},
        {"productID": "badge", "displayPrice": "9.99", "type": "NonConsumable"}]})");
    auto const result =
        runPaywall("products --json --catalogue " + quoted(path) + " --products " + quoted(products));
    EXPECT_EQ(result.status, 0) << result.output;
    return result.output;
}

TEST(ProductsCommandTest, ListsInTheOrderAskedForAndNamesEachUnknownIdentifierOnce) {
    auto const output = list("{}", "badge,x,coins,x,y");
    EXPECT_THAT(output, HasSubstr(R"({"state":"failed","invalidProductIdentifiers":["x","y"]})"));
    EXPECT_LT(output.find("\"badge\""), output.find("\"coins\""));
    EXPECT_EQ(list("{}", ""), "{\"state\":\"failed\",\"invalidProductIdentifiers\":[]}\n");
}

TEST(ProductsCommandTest, CallsNothingUnknownWhenTheLoadFailed) {
    auto const failing = R"({"_storeKitErrors": [{"enabled": true, "name": "Load Products"}]})";
    auto const output = list(failing, "badge,coins");
    EXPECT_THAT(output, HasSubstr(R"({"state":"failed","invalidProductIdentifiers":[]})"));
    EXPECT_THAT(output, HasSubstr("could not be loaded"));
    EXPECT_THAT(output, Not(HasSubstr("productIdentifier\"")));
}

} // namespace
} // namespace trelundo::paywall::test
