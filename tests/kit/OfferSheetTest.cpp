#include "screens/offer/OfferViewController.h"
#include "tests/support/Products.h"
#include "tests/support/ScreenFixture.h"

namespace trelundo::test {
namespace {

using enum SKProductDiscountPaymentMode;
using enum SKProductPeriodUnit;

Ref<SKPaymentDiscount> payWith(std::string identifier) {
    return make<SKPaymentDiscount>(SKPaymentDiscount::Fields{.identifier = std::move(identifier)});
}

class OfferSheetTest : public ScreenFixture {
protected:
    /// Both lines of a sheet as it stands.
    std::string lines() { return textOf("offerLabel") + "\n" + textOf("infoLabel"); }
    std::string linesFor(Ref<SKProduct> product) {
        sheet->setProduct(std::move(product));
        return lines();
    }
    Ref<OfferViewController> sheet = show(make<OfferViewController>());
};

struct OfferRow {
    char const* what;
    Offer offer;
    std::optional<SKProductSubscriptionPeriod> productPeriod;
    char const* lines;
};

TEST_F(OfferSheetTest, SaysEveryKindOfOffer) {
    constexpr SKProductSubscriptionPeriod quarter{3, month};
    OfferRow const rows[] = {
        {"a year paid once",
         {payUpFront, "11.99", {1, year}},
         {{1, year}},
         "1 Year for Just $0.99/mo\nJust $11.99 for a year, $59.99/year after."},
        {"a year, whatever the mode",
         {freeTrial, "0", {1, year}},
         {{1, year}},
         "Get 1 Year FREE!\nJust $0.00 for a year, $59.99/year after."},
        {"weeks",
         {payAsYouGo, "0.99", {1, week}, 3},
         {{1, week}},
         "3 Weeks for Just $0.99/week\n$59.99/week after."},
        {"months",
         {payAsYouGo, "4.99", {1, month}, 2},
         {{1, month}},
         "2 Months for Just $4.99/mo\n$59.99/mo after."},
        {"years",
         {payAsYouGo, "29.99", {1, year}, 2},
         {{1, year}},
         "2 Years for Just $29.99/year\n$59.99/year after."},
        {"days have no unit", {payAsYouGo, "1.99", {3, day}, 4}, quarter, "4 Days for Just \n after."},
        {"paid once", {payUpFront, "9.99", {6, month}}, {{2, year}}, "6 Months for Just $9.99\n after."},
        {"two years paid once",
         {payUpFront, "69.99", {2, year}},
         std::nullopt,
         "2 Years for Just $69.99\n after."},
        {"a free week", {freeTrial, "0", {1, week}}, {{1, year}}, "Get 7 Days FREE!\n$59.99/year after."},
        {"a free month", {freeTrial, "0", {1, month}}, {{7, day}}, "Get 1 Month FREE!\n after."},
    };
    for (auto const& row : rows)
        EXPECT_EQ(linesFor(makeProduct("p", "59.99", row.productPeriod, row.offer)), row.lines) << row.what;
}

TEST_F(OfferSheetTest, ChoosesTheOfferThatApplies) {
    Offer const introductory{payUpFront, "1.00", {1, month}};
    auto const product =
        makeProduct("p", "59.99", test::year, introductory,
                    {{payUpFront, "2.00", {1, month}, 1, "a"}, {payUpFront, "3.00", {1, month}, 1, "b"}});
    auto const offerLine = [&](Ref<SKPaymentDiscount> discount, Ref<SKProduct> offered) {
        sheet->setPaymentDiscount(std::move(discount));
        sheet->setProduct(std::move(offered));
        return textOf("offerLabel");
    };
    EXPECT_EQ(offerLine(nullptr, makeProduct("none", "59.99", test::year)), "") << "no offer at all";
    EXPECT_EQ(offerLine(nullptr, product), "1 Month for Just $1.00");
    EXPECT_EQ(offerLine(payWith("b"), product), "1 Month for Just $3.00");
    EXPECT_EQ(offerLine(payWith("unknown"), product), "1 Month for Just $1.00");

    auto const unnamed =
        makeProduct("u", "59.99", test::year, introductory,
                    {{payUpFront, "2.00", {1, month}, 1, "a"}, {payUpFront, "4.00", {1, month}}});
    EXPECT_EQ(offerLine(nullptr, unnamed), "1 Month for Just $4.00") << "two absent identifiers match";
    EXPECT_EQ(offerLine(payWith("a"), unnamed), "1 Month for Just $2.00");

    sheet->setIntroductoryPriceWasOffered(true);
    EXPECT_EQ(offerLine(payWith("b"), product), "1 Month for Just $3.00") << "hides introductory offers only";
    EXPECT_EQ(offerLine(nullptr, product), "1 Month for Just $3.00") << "without an offer the texts stay";
}

TEST_F(OfferSheetTest, ADiscountSetLaterIsPaidWithButNotSaid) {
    tap("continueButton");
    EXPECT_TRUE(store.payments.empty()) << "nothing to buy";
    sheet->setProduct(makeProduct("p", "59.99", test::year, Offer{payUpFront, "1.00", {1, month}},
                                  {{payUpFront, "3.00", {1, month}, 1, "b"}}));
    auto const before = lines();
    sheet->setPaymentDiscount(payWith("b"));
    EXPECT_EQ(lines(), before);
    tap("continueButton");
    ASSERT_EQ(store.payments.size(), 1U);
    EXPECT_EQ(store.payments.front().productIdentifier, "p");
    EXPECT_EQ(store.payments.front().paymentDiscount, sheet->paymentDiscount());
}

} // namespace
} // namespace trelundo::test
