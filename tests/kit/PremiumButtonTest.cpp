#include "controls/PremiumButton.h"
#include "controls/PlanTerms.h"
#include "tests/support/Products.h"

#include <gtest/gtest.h>

namespace trelundo::test {
namespace {

using Mode = SKProductDiscountPaymentMode;

constexpr auto normal = UIControlState::normal;
constexpr auto selected = UIControlState::selected;

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
    std::string compositeTitle(Offer const& offer, char const* price = "59.99",
                               SKProductSubscriptionPeriod period = year) {
        return show(makeProduct("p", price, period, offer))->attributedTitle(normal)->string();
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

TEST_F(PremiumButtonTest, NamesPlans) {
    auto const plan = [](int count, SKProductPeriodUnit unit, bool capitalize, bool down) {
        return PremiumButton::plan({.productSubscriptionPeriod = {count, unit},
                                    .capitalizeFirstLetter = capitalize,
                                    .periodUnitDown = down});
    };
    EXPECT_EQ(plan(1, SKProductPeriodUnit::year, true, true), "12 Months");
    EXPECT_EQ(plan(1, SKProductPeriodUnit::week, false, true), "7 days");
    EXPECT_EQ(plan(2, SKProductPeriodUnit::week, false, true), "2 weeks");
    EXPECT_EQ(plan(3, SKProductPeriodUnit::month, true, false), "3 Months");
    EXPECT_EQ(plan(1, SKProductPeriodUnit::year, false, false), "1 year");
    EXPECT_EQ(plan(1, static_cast<SKProductPeriodUnit>(7), true, true), "");
}

TEST_F(PremiumButtonTest, ShowsAYearByTheMonthWithItsSaving) {
    auto const button = show(yearly(), {monthly(), yearly()});
    EXPECT_EQ(button->title(normal), "1 Year: $2.49/mo · Save 50% per year");
    auto const title = *button->attributedTitle(selected);
    ASSERT_EQ(title.runs().size(), 2U);
    EXPECT_EQ(title.runs()[0].text, "1 Year\n");
    EXPECT_EQ(title.runs()[0].attributes.get(NSAttributedStringKey::font),
              UIFont::system(14, UIFont::Weight::bold));
    EXPECT_EQ(title.runs()[1].text, "$2.49/mo · Save 50% per year");
    ASSERT_TRUE(button->totalLabel());
    EXPECT_EQ(button->totalLabel()->text(), "Total:\n$29.99");
    EXPECT_EQ(plainTitle(yearly(), {yearly()}), "1 Year: $2.49/mo") << "nothing to compare with";
    EXPECT_EQ(plainTitle(yearly(), {makeProduct("w", "1.99", sevenDays)}),
              "1 Year: $2.49/mo · Save 70% per year");
    EXPECT_EQ(plainTitle(yearly(), {makeProduct("w", "1.99", week)}), "1 Year: $2.49/mo")
        << "only a week of 7 days compares";
}

TEST_F(PremiumButtonTest, ShowsOtherTermsPlainly) {
    EXPECT_EQ(plainTitle(monthly()), "1 Month: $4.99");
    EXPECT_EQ(plainTitle(makeProduct("life", "79.99", std::nullopt)), "One-Time Purchase: $79.99");
    EXPECT_EQ(plainTitle(makeProduct("life", "79.99", SKProductSubscriptionPeriod{})),
              "One-Time Purchase: $79.99");
    EXPECT_EQ(plainTitle(makeProduct("y", "29.99", year, Offer{})), "12 Months: $29.99");
    EXPECT_EQ(show(makeProduct("y", "29.99", year, Offer{}))->totalLabel(), nullptr);
}

TEST_F(PremiumButtonTest, ComposesIntroductoryPrices) {
    EXPECT_EQ(compositeTitle({.mode = Mode::payUpFront, .price = "29.99", .period = year}),
              "1 Year for Just $2.49/mo.\nJust $29.99 for a year, $59.99/year after");
    EXPECT_EQ(compositeTitle({.mode = Mode::payAsYouGo, .price = "1.99", .period = month, .count = 3}, "4.99",
                             month),
              "3 Months for Just $1.99/mo.\n$4.99/mo after");
    EXPECT_EQ(compositeTitle(
                  {.mode = Mode::payUpFront, .price = "9.99", .period = {6, SKProductPeriodUnit::month}}),
              "6 Months for Just $9.99.\n$59.99/year after");
    auto const euros = make<SKProduct>(SKProduct::Fields{
        .price = 48,
        .priceLocale = Locale{"en_IE@currency=EUR"},
        .subscriptionPeriod = year,
        .introductoryPrice = makeDiscount({.mode = Mode::payUpFront, .price = "24", .period = year})});
    EXPECT_EQ(show(euros)->attributedTitle(normal)->string(),
              "1 Year for Just €2.00/mo.\nJust €24.00 for a year, €48.00/year after")
        << "a discount is shown in the product's currency, whatever its own locale says";
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

TEST_F(PremiumButtonTest, PrefersThePromotionalOffer) {
    auto const product =
        makeProduct("y", "59.99", year, Offer{},
                    {{.mode = Mode::payUpFront, .price = "29.99", .period = year, .identifier = "half"}});
    EXPECT_TRUE(isFreeTrial(offerDiscount(*product, nullptr, false)));
    EXPECT_EQ(offerDiscount(*product, nullptr, true), nullptr);
    discount = make<SKPaymentDiscount>(SKPaymentDiscount::Fields{.identifier = "half"});
    EXPECT_EQ(offerDiscount(*product, discount, true), product->discounts().front());
    auto const unnamed = makeProduct("y", "59.99", year, Offer{}, {{.mode = Mode::payUpFront, .price = "1"}});
    EXPECT_EQ(offerDiscount(*unnamed, nullptr, false), unnamed->discounts().front())
        << "two absent identifiers match";
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

TEST_F(PremiumButtonTest, HidesTheTotalWhileNotSelected) {
    auto button = show(yearly(), {yearly(), monthly()});
    button->setDelegate(screen);
    button->setSelected(false);
    EXPECT_TRUE(button->totalLabel()->isHidden());
    EXPECT_TRUE(screen->offers.empty()) << "deselecting tells nothing";
    button->setSelected(true);
    button->setSelected(true);
    EXPECT_FALSE(button->totalSeparatorView()->isHidden());
    EXPECT_EQ(screen->offers.size(), 2U) << "every assignment counts";
    EXPECT_EQ(button->backgroundColor()->cgColor().hexText(), "#edeceeff");
}

TEST_F(PremiumButtonTest, PlacesTheTotalBlockAtTheTrailingEdge) {
    auto button = show(yearly(), {yearly(), monthly()});
    button->setSelected(true);
    button->setFrame({0, 0, 320, 60});
    button->layoutIfNeeded();
    auto const label = button->totalLabel()->frame();
    EXPECT_DOUBLE_EQ(label.minX(), 320 - label.width() - 25);
    EXPECT_DOUBLE_EQ(label.minY(), (60 - label.height()) * 0.5);
    EXPECT_EQ(button->totalSeparatorView()->frame(), CGRect(320 - label.width() - 50, 12, 1, 36));
    EXPECT_LE(button->titleLabel()->frame().maxX(), button->totalSeparatorView()->frame().minX());

    button->setSemanticContentAttribute(UISemanticContentAttribute::forceRightToLeft);
    button->setNeedsLayout();
    button->layoutIfNeeded();
    EXPECT_DOUBLE_EQ(button->totalLabel()->frame().minX(), 25);
    EXPECT_DOUBLE_EQ(button->totalSeparatorView()->frame().minX(), label.width() + 50);
}

TEST_F(PremiumButtonTest, FromAnArchiveIsNotSetUp) {
    auto const archived = make<PremiumButton>(NSCoder{});
    EXPECT_EQ(archived->layer().cornerRadius(), 0);
    EXPECT_EQ(archived->contentEdgeInsets(), UIEdgeInsets{});
    EXPECT_EQ(show(monthly())->layer().cornerRadius(), 8);
}

TEST(Saving, IsRoundedToTens) {
    auto const saving = [](char const* yearlyPrice, char const* price, int count) {
        return savingPercentage(*Decimal::parse(yearlyPrice), *Decimal::parse(price), count);
    };
    EXPECT_EQ(saving("55", "100", 1), 50) << "0.45";
    EXPECT_EQ(saving("56", "100", 1), 40) << "0.44";
    EXPECT_EQ(saving("45", "100", 1), 60) << "0.55";
    EXPECT_EQ(saving("29.99", "4.99", 12), 50);
    EXPECT_EQ(saving("120", "4.99", 12), -100) << "a dearer year is shown as it is";
    EXPECT_DEATH(saving("29.99", "0", 12), "NaN");
}

} // namespace
} // namespace trelundo::test
