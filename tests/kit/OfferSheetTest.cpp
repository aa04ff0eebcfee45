#include "tests/support/Products.h"
#include "tests/support/ScreenFixture.h"
#include "trelundo/kit/screens/offer/OfferViewController.h"

namespace trelundo::test {
namespace {

using enum SKProductDiscountPaymentMode;

Ref<SKPaymentDiscount> payWith(std::string identifier) {
    return make<SKPaymentDiscount>(SKPaymentDiscount::Fields{.identifier = std::move(identifier)});
}

class OfferSheetTest : public ScreenFixture {
protected:
    /// Both lines of a sheet as it stands.
    std::string lines() { return textOf("offerLabel") + "\n" + textOf("infoLabel"); }
    Ref<OfferViewController> sheet = show(make<OfferViewController>());
};

TEST_F(OfferSheetTest, SaysEveryKindOfOffer) {
    auto const said = [&](Offer const& offer, std::optional<SKProductSubscriptionPeriod> const& period) {
        sheet->setProduct(makeProduct("p", "59.99", period, offer));
        return lines();
    };
    using Unit = SKProductPeriodUnit;
    EXPECT_EQ(said({payUpFront, "11.99", year}, year),
              "1 Year for Just $0.99/mo\nJust $11.99 for a year, $59.99/year after.");
    EXPECT_EQ(said({freeTrial, "0", year}, year),
              "Get 1 Year FREE!\nJust $0.00 for a year, $59.99/year after.");
    EXPECT_EQ(said({payAsYouGo, "0.99", week, 3}, week), "3 Weeks for Just $0.99/week\n$59.99/week after.");
    EXPECT_EQ(said({payAsYouGo, "4.99", month, 2}, month), "2 Months for Just $4.99/mo\n$59.99/mo after.");
    EXPECT_EQ(said({payAsYouGo, "29.99", year, 2}, year), "2 Years for Just $29.99/year\n$59.99/year after.");
    EXPECT_EQ(said({freeTrial, "0", week}, year), "Get 7 Days FREE!\n$59.99/year after.");
    // Periods without words of their own leave gaps.
    EXPECT_EQ(said({payAsYouGo, "1.99", {3, Unit::day}, 4}, {{3, Unit::month}}), "4 Days for Just \n after.");
    EXPECT_EQ(said({payUpFront, "9.99", {6, Unit::month}}, {{2, Unit::year}}),
              "6 Months for Just $9.99\n after.");
    EXPECT_EQ(said({payUpFront, "69.99", {2, Unit::year}}, std::nullopt), "2 Years for Just $69.99\n after.");
    EXPECT_EQ(said({freeTrial, "0", month}, sevenDays), "Get 1 Month FREE!\n after.");
}

TEST_F(OfferSheetTest, ChoosesTheOfferThatApplies) {
    Offer const introductory{payUpFront, "1.00", month};
    auto const product =
        makeProduct("p", "59.99", year, introductory,
                    {{payUpFront, "2.00", month, 1, "a"}, {payUpFront, "3.00", month, 1, "b"}});
    auto const offerLine = [&](Ref<SKPaymentDiscount> discount, Ref<SKProduct> offered) {
        sheet->setPaymentDiscount(std::move(discount));
        sheet->setProduct(std::move(offered));
        return textOf("offerLabel");
    };
    EXPECT_EQ(offerLine(nullptr, makeProduct("none", "59.99", year)), "") << "no offer at all";
    EXPECT_EQ(offerLine(nullptr, product), "1 Month for Just $1.00");
    EXPECT_EQ(offerLine(payWith("b"), product), "1 Month for Just $3.00");
    EXPECT_EQ(offerLine(payWith("unknown"), product), "1 Month for Just $1.00");

    auto const unnamed = makeProduct("u", "59.99", year, introductory,
                                     {{payUpFront, "2.00", month, 1, "a"}, {payUpFront, "4.00", month}});
    EXPECT_EQ(offerLine(nullptr, unnamed), "1 Month for Just $4.00") << "two absent identifiers match";
    EXPECT_EQ(offerLine(payWith("a"), unnamed), "1 Month for Just $2.00");

    sheet->setIntroductoryPriceWasOffered(true);
    EXPECT_EQ(offerLine(payWith("b"), product), "1 Month for Just $3.00") << "hides introductory offers only";
    EXPECT_EQ(offerLine(nullptr, product), "1 Month for Just $3.00") << "without an offer the texts stay";
}

TEST_F(OfferSheetTest, ADiscountSetLaterIsPaidWithButNotSaid) {
    sheet->setProduct(makeProduct("p", "59.99", year, Offer{payUpFront, "1.00", month},
                                  {{payUpFront, "3.00", month, 1, "b"}}));
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
