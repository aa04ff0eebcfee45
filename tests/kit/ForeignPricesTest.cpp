#include "tests/support/Products.h"
#include "tests/support/ScreenFixture.h"
#include "trelundo/kit/common/Texts.h"
#include "trelundo/kit/controls/PremiumButton.h"
#include "trelundo/kit/controls/PremiumV2Button.h"
#include "trelundo/kit/screens/offer/OfferV3ViewController.h"
#include "trelundo/kit/screens/offer/OfferV4ViewController.h"
#include "trelundo/platform/graphics/text/internal/UnicodeAlgorithms.h"

#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace trelundo::test {
namespace {

using Mode = SKProductDiscountPaymentMode;

/// The prices of one storefront.
struct Storefront {
    char const* locale;
    char const* year;
    char const* firstYear; // under an introductory price
    char const* month;
};
constexpr Storefront euro{"de_DE@currency=EUR", "41.99", "20.99", "6.99"};
constexpr Storefront rupiah{"id_ID@currency=IDR", "699000", "349000", "119000"};
constexpr std::array storefronts{euro,
                                 rupiah,
                                 Storefront{"de_CH@currency=CHF", "45", "22.50", "7.50"},
                                 Storefront{"sv_SE@currency=SEK", "449", "229", "79"},
                                 Storefront{"pl_PL@currency=PLN", "179.99", "89.99", "29.99"},
                                 Storefront{"en_SA@currency=SAR", "164.99", "82.99", "27.99"}};

Ref<SKProduct> product(Storefront const& shop, char const* price, SKProductSubscriptionPeriod period,
                       std::optional<Offer> const& introductory = std::nullopt) {
    return makeProduct(price, price, period, introductory, {}, shop.locale);
}

Ref<SKProduct> plainYear(Storefront const& shop) { return product(shop, shop.year, year); }
Ref<SKProduct> cheaperFirstYear(Storefront const& shop) {
    return product(shop, shop.year, year, Offer{Mode::payUpFront, shop.firstYear, year});
}

void expectWhole(UILabel const& label, std::string const& where) {
    auto const fit = label.fit();
    EXPECT_FALSE(fit.truncated || fit.breaksWord) << where << ": " << label.text().value_or("");
}

/// A yearly row beside a monthly plan, as wide as the small and the middle phone make it.
class ForeignPricesTest : public ScreenFixture {
protected:
    ForeignPricesTest() { resize("phone-375x667"); }

    Ref<PremiumButton> row(Ref<SKProduct> yearly, Storefront const& shop, bool onSmallPhone,
                           bool isSelected = true) {
        auto button = make<PremiumButton>();
        if (onSmallPhone) {
            button->setTextFont(UIFont::system(9, UIFont::Weight::semibold));
            button->setTextBoldFont(UIFont::system(11, UIFont::Weight::bold));
            button->titleLabel()->setFont(button->textBoldFont());
        }
        button->setProducts({yearly, product(shop, shop.month, month)});
        button->setProduct(yearly);
        button->setSelected(isSelected);
        button->setFrame(onSmallPhone ? CGRect{0, 0, 290, 50} : CGRect{0, 0, 345, 60});
        button->layoutIfNeeded();
        return button;
    }
};

TEST_F(ForeignPricesTest, NoRowIsCutInAnyLanguageAndCurrency) {
    for (auto const& language : Texts::kitBundle().localizations()) {
        Locale::setPreferredLanguages({language});
        for (auto const& shop : storefronts)
            for (auto const& yearly : {plainYear(shop), cheaperFirstYear(shop)})
                for (bool const onSmallPhone : {true, false})
                    for (bool const isSelected : {true, false})
                        expectWhole(*row(yearly, shop, onSmallPhone, isSelected)->titleLabel(),
                                    language + " " + shop.locale);
    }
}

TEST_F(ForeignPricesTest, ASavingGivesWayBeforeAnAmountOrAPeriodDoes) {
    Locale::setPreferredLanguages({"en"});
    EXPECT_EQ(row(plainYear(euro), euro, false)->titleLabel()->text(),
              "1 Year\n3,49\u00A0€/mo · Save 50% per year");
    auto const button = row(plainYear(rupiah), rupiah, false);
    EXPECT_EQ(button->titleLabel()->text(), "1 Year\nRp\u00A058.250,00/mo");
    EXPECT_GE(button->titleLabel()->fit().scale, 0.7);
    button->setSelected(false);
    button->layoutIfNeeded();
    EXPECT_EQ(button->titleLabel()->text(), "1 Year: Rp\u00A058.250,00/mo · Save 50% per year")
        << "there is room again without the total block";
}

TEST_F(ForeignPricesTest, OffersHoldLongPricesOnTheSmallestPhone) {
    resize("phone-320x568");
    for (auto const& language : Texts::kitBundle().localizations()) {
        Locale::setPreferredLanguages({language});
        auto const check = [&](auto screen, std::vector<char const*> labels) {
            screen->setProduct(cheaperFirstYear(rupiah));
            show(screen);
            for (auto const* name : labels) expectWhole(*find<UILabel>(name), language + " " + name);
            takeAway();
        };
        check(make<OfferV3ViewController>(), {"offerLabel", "infoLabel"});
        check(make<OfferV4ViewController>(), {"infoLine1Label", "infoLine2Label"});
    }
}

// Writing from right to left

/// The letters of `text` from the left edge of the screen to the right, unseen ones left out.
std::string seen(std::string const& text) {
    auto const units = icu::UnicodeString::fromUTF8(text);
    std::u16string_view const logical(units.getBuffer(), static_cast<std::size_t>(units.length()));
    auto const levels = embeddingLevels(logical, baseDirection(logical) != BaseDirection::leftToRight);
    icu::UnicodeString visual;
    for (auto const index : visualOrder(levels)) {
        auto const unit = units.charAt(index);
        if (!u_hasBinaryProperty(unit, UCHAR_DEFAULT_IGNORABLE_CODE_POINT)) visual.append(unit);
    }
    std::string result;
    return visual.toUTF8String(result);
}

TEST_F(ForeignPricesTest, APeriodStandsOnTheFarSideOfItsAmountInRightToLeftLanguages) {
    struct Row {
        char const* language;
        char const* month; // as in "$$$/month"
        char const* plan;
    };
    for (auto const& [language, monthly, plan] :
         {Row{"ar", "شهر", "شهر واحد"}, Row{"he", "חודש", "חודש אחד"}}) {
        Locale::setPreferredLanguages({language});
        for (auto const& shop : storefronts) {
            if (std::string_view{shop.locale} == euro.locale) continue; // has no letters
            auto const amount = PremiumManager::price(*product(shop, shop.month, month));
            auto const row = make<PremiumV2Button>();
            row->setProduct(product(shop, shop.month, month));
            auto const billed = row->attributedTitle(UIControlState::normal)->string();
            EXPECT_EQ(seen(billed.substr(0, billed.find('\n'))), seen(monthly) + "/" + seen(amount));

            auto const first = make<PremiumButton>();
            first->setProduct(product(shop, shop.month, month));
            EXPECT_EQ(seen(*first->title(UIControlState::normal)), seen(amount) + " :" + seen(plan));
        }
    }
}

TEST_F(ForeignPricesTest, SignsStandOnOneSideOfAllPricesOfAScreen) {
    Storefront const dollars{"en_US@currency=USD", "39.99", "19.99", "6.99"};
    for (auto const* language : {"ar", "he"}) {
        Locale::setPreferredLanguages({language});
        auto const button = row(plainYear(dollars), dollars, false);
        auto const& selected = button->titleLabel()->text();
        EXPECT_NE(seen(selected->substr(selected->find('\n') + 1)).find("$3.33"), std::string::npos);
        EXPECT_NE(seen(button->totalLabel()->text().value_or("")).find("$39.99"), std::string::npos);
        button->setProduct(product(dollars, "6.99", month));
        EXPECT_EQ(seen(*button->title(UIControlState::normal)).find("$6.99"), 0U);
    }
}

} // namespace
} // namespace trelundo::test
