#include "tests/tools/paywall/Program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace trelundo::paywall::test {
namespace {

using testing::HasSubstr;
using testing::Not;

class ProductsCommand : public testing::Test {
protected:
    Result list(std::string const& settings, std::string const& products) {
        auto const path =
            writeText(folder / "Shop.storekit", R"({"settings": )" + settings + R"(, "products": [
            {"productID": "coins", "displayPrice": "0.99", "type": "Consumable"},
            {"productID": "badge", "displayPrice": "9.99", "type": "NonConsumable"}]})");
        return runPaywall({"products", "--catalogue", path, "--products", products, "--json"});
    }
    TemporaryFolder folder;
};

TEST_F(ProductsCommand, NamesEachUnknownIdentifierOnce) {
    auto const result = list("{}", "badge,x,coins,x,y");
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output, HasSubstr(R"({"state":"failed","invalidProductIdentifiers":["x","y"]})"));
    EXPECT_LT(result.output.find("\"badge\""), result.output.find("\"coins\""));
}

TEST_F(ProductsCommand, AsksForNothingWhenToldSo) {
    auto const result = list("{}", "");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "{\"state\":\"failed\",\"invalidProductIdentifiers\":[]}\n");
}

TEST_F(ProductsCommand, CallsNothingUnknownWhenTheLoadFailed) {
    auto const result =
        list(R"({"_storeKitErrors": [{"enabled": true, "name": "Load Products"}]})", "badge,coins");
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output, HasSubstr(R"({"state":"failed","invalidProductIdentifiers":[]})"));
    EXPECT_THAT(result.output, HasSubstr("could not be loaded"));
    EXPECT_THAT(result.output, Not(HasSubstr("productIdentifier\"")));
}

} // namespace
} // namespace trelundo::paywall::test
