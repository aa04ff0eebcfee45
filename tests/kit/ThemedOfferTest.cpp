#include "tests/support/Products.h"
#include "tests/support/ScreenFixture.h"
#include "trelundo/kit/screens/offer/OfferV2ViewController.h"
#include "trelundo/kit/screens/offer/OfferV3ViewController.h"
#include "trelundo/kit/screens/offer/OfferV4ViewController.h"
#include "trelundo/platform/uikit/text/AttributedText.h"

namespace trelundo::test {
namespace {

namespace Key = NSAttributedStringKey;
using enum SKProductDiscountPaymentMode;

Ref<SKProduct> yearAt(char const* offerPrice, char const* price = "59.99") {
    return makeProduct("p", price, year, Offer{payUpFront, offerPrice, year});
}

class ThemedOfferTest : public ScreenFixture {
protected:
    template <class Screen> Ref<Screen> showOffer(Ref<Screen> screen, Ref<SKProduct> product) {
        screen->setProduct(std::move(product));
        return show(screen);
    }
    double sizeOf(std::string const& name, std::size_t run = 0) {
        return find<UILabel>(name)->attributedText()->runs().at(run).attributes.get(Key::font)->pointSize();
    }
};

TEST_F(ThemedOfferTest, ThePercentageIsRoundedDownToFives) {
    auto const screen = showOffer(make<OfferV4ViewController>(), yearAt("29.99"));
    struct Row {
        char const *offer, *price, *shown;
    };
    constexpr Row rows[] = {{"29.99", "59.99", "50%"},
                            {"45.00", "59.99", "20%"},
                            {"0", "59.99", "100%"},
                            {"59.99", "59.99", "0%"},
                            {"61", "59.99", "0%"},
                            {"22", "10", "-120%"},
                            {"10000000", "0.01", "-99999999900%"}};
    for (auto const& row : rows) {
        screen->setProduct(yearAt(row.offer, row.price));
        EXPECT_EQ(textOf("offerLine1Label"), row.shown) << row.offer << " of " << row.price;
    }
}

TEST_F(ThemedOfferTest, AProductForNothingEndsTheProgram) {
    auto const screen = make<OfferV2ViewController>();
    EXPECT_DEATH(screen->setProduct(yearAt("1.00", "0")), "cannot be converted to Int");
    EXPECT_DEATH(screen->setProduct(yearAt("0", "0")), "cannot be converted to Int");
    screen->setProduct(makeProduct("p", "0", year));
}

TEST_F(ThemedOfferTest, OnlyALanguageWithEnInItGetsTheLargeHeadline) {
    EXPECT_EQ(make<OfferV2ViewController>()->preferredLanguage(), "en");
    std::pair<std::optional<std::string>, double> const rows[] = {
        {"en-GB", 93}, {"sl-x-eng", 93}, {"fr", 35}, {"EN", 35}, {std::nullopt, 35}};
    for (auto const& [language, size] : rows) {
        auto screen = make<OfferV2ViewController>();
        screen->setPreferredLanguage(language);
        showOffer(screen, yearAt("29.99"));
        for (auto const* name : {"offerLine1Label", "offerLine2Label"})
            EXPECT_EQ(sizeOf(name), size) << language.value_or("none");
        takeAway();
    }
}

TEST_F(ThemedOfferTest, TheSentenceNamesPeriodAndPrice) {
    auto const monthOffer = Offer{payUpFront, "1.00", month};
    auto const screen = showOffer(make<OfferV3ViewController>(), makeProduct("p", "9.99", month, monthOffer));
    EXPECT_EQ(textOf("offerLabel"), "1 month\nfor just\n$1.00");
    EXPECT_EQ(textOf("infoLabel"), "$9.99/year after") << "always by the year";
    EXPECT_EQ(sizeOf("offerLabel", 0), 38);
    EXPECT_EQ(sizeOf("offerLabel", 1), 20);
    EXPECT_EQ(find("infoLabel")->bounds().width(), find("continueButton")->bounds().width());
    EXPECT_EQ(find("limitedTimeOfferLabel")->frame().minX(), 38);
}

} // namespace
} // namespace trelundo::test
