#include "trelundo/kit/controls/PremiumButton.h"
#include "tests/support/Products.h"
#include "trelundo/kit/plans/internal/Saving.h"

#include <gtest/gtest.h>

namespace trelundo::test {
namespace {

using Mode = SKProductDiscountPaymentMode;

constexpr auto normal = UIControlState::normal;

class RecordingScreen : public NSObject, public PremiumButtonDelegate {
public:
    void updateOffer(std::optional<std::string> const& title,
                     std::optional<std::string> const& subtitle) override {
        offers.push_back(title.value_or("(none)") + "|" + subtitle.value_or("(none)"));
    }
    std::vector<std::string> offers;
};

class PremiumButtonTest : public testing::Test {
protected:
    PremiumButtonTest() { Locale::setPreferredLanguages({"en"}); }

    Ref<PremiumButton> show(Ref<SKProduct> product, Products products = {}) {
        auto button = make<PremiumButton>();
        button->setProducts(std::move(products));
        button->setPaymentDiscount(discount);
        button->setIntroductoryPriceWasOffered(introductoryPriceWasOffered);
        button->setProduct(std::move(product));
        return button;
    }
    std::string plainTitle(Ref<SKProduct> product, Products products = {}) {
        return show(std::move(product), std::move(products))->title(normal).value_or("");
    }
    std::string offerFor(char const* abTest, Ref<SKProduct> product) {
        auto button = show(std::move(product));
        button->setABTest(abTest);
        button->setDelegate(screen);
        button->setSelected(true);
        return screen->offers.back();
    }

    Ref<SKPaymentDiscount> discount;
    bool introductoryPriceWasOffered = false;
    Ref<RecordingScreen> screen = make<RecordingScreen>();
};

TEST_F(PremiumButtonTest, ShowsTermsAndTheSavingOfAYear) {
    auto const yearBeside = [&](char const* price, auto const& period) {
        return plainTitle(yearly(), {makeProduct("other", price, period)});
    };
    EXPECT_EQ(yearBeside("4.99", month), "1 Year: $2.49/mo · Save 50% per year");
    EXPECT_EQ(yearBeside("1.99", sevenDays), "1 Year: $2.49/mo · Save 70% per year");
    EXPECT_EQ(yearBeside("1.99", week), "1 Year: $2.49/mo") << "only a week of 7 days compares";
    EXPECT_EQ(plainTitle(yearly(), {yearly()}), "1 Year: $2.49/mo") << "nothing to compare with";
    EXPECT_EQ(plainTitle(monthly()), "1 Month: $4.99");
    for (auto const& once : {std::optional<SKProductSubscriptionPeriod>{}, {SKProductSubscriptionPeriod{}}})
        EXPECT_EQ(plainTitle(makeProduct("life", "79.99", once)), "One-Time Purchase: $79.99");
    auto const trial = show(makeProduct("y", "29.99", year, Offer{}));
    EXPECT_EQ(trial->title(normal), "12 Months: $29.99");
    EXPECT_EQ(trial->totalLabel(), nullptr);
}

TEST_F(PremiumButtonTest, ComposesTheOfferThatIsPaidWith) {
    Offer const half{.mode = Mode::payUpFront, .price = "24", .period = year, .identifier = "half"};
    auto const title = [&] {
        return show(makeProduct("y", "48", year, Offer{}, {half}, "en_IE@currency=EUR"))
            ->attributedTitle(normal);
    };
    EXPECT_FALSE(title()) << "a trial is told beside the button";
    discount = make<SKPaymentDiscount>(SKPaymentDiscount::Fields{.identifier = "half"});
    EXPECT_EQ(title().value_or(NSAttributedString{}).string(),
              "1 Year for Just €2.00/mo.\nJust €24.00 for a year, €48.00/year after")
        << "in the product's currency, whatever the discount's own locale says";
}

TEST_F(PremiumButtonTest, AYearCannotBeComparedWithAFreePlan) {
    Products const all{makeProduct("free", "0", month)};
    EXPECT_DEATH(show(yearly(), all), "NaN");
    EXPECT_DEATH(
        show(makeProduct("y", "59.99", year, Offer{.mode = Mode::payUpFront, .price = "29.99"}), all), "NaN")
        << "whatever its introductory price";
    EXPECT_EQ(plainTitle(makeProduct("y", "59.99", year, Offer{}), all), "12 Months: $59.99")
        << "beside a trial nothing is compared";
}

TEST_F(PremiumButtonTest, ReportsTrialsByTestTag) {
    auto const trial = makeProduct("y", "29.99", year, Offer{});
    EXPECT_EQ(offerFor("", trial), "Get 7 Days FREE!|Then $29.99/year");
    EXPECT_EQ(offerFor("ziokrefa", trial), "Get 7 Days FREE!|with a yearly subscription");
    EXPECT_EQ(offerFor("quivera602", trial), "Try 7 Days for FREE|(none)");
    EXPECT_EQ(offerFor("", makeProduct("m", "4.99", month, Offer{})), "Get 7 Days FREE!|(none)");
    EXPECT_EQ(offerFor("", monthly()), "(none)|(none)");
    introductoryPriceWasOffered = true;
    EXPECT_EQ(offerFor("", trial), "(none)|(none)");
}

TEST_F(PremiumButtonTest, ShowsTheTotalBesideTheTitleWhileSelected) {
    auto button = show(yearly(), {yearly(), monthly()});
    button->setDelegate(screen);
    button->setSelected(false);
    EXPECT_TRUE(button->totalLabel()->isHidden());
    EXPECT_TRUE(screen->offers.empty()) << "deselecting tells nothing";
    button->setSelected(true);
    button->setSelected(true);
    EXPECT_FALSE(button->totalSeparatorView()->isHidden() || button->totalLabel()->isHidden());
    EXPECT_EQ(screen->offers.size(), 2U) << "every assignment counts";
}

TEST_F(PremiumButtonTest, FromAnArchiveIsNotSetUp) {
    auto const archived = make<PremiumButton>(NSCoder{});
    EXPECT_EQ(archived->layer().cornerRadius(), 0);
}

TEST(SavingTest, IsRoundedToTens) {
    auto const saving = [](int yearlyPrice) { return savingPercentage(yearlyPrice, 100, 1); };
    EXPECT_EQ(saving(55), 50) << "0.45";
    EXPECT_EQ(saving(56), 40) << "0.44";
    EXPECT_EQ(saving(45), 60) << "0.55";
}

} // namespace
} // namespace trelundo::test
