#include "trelundo/kit/controls/PremiumV2Button.h"
#include "tests/support/Products.h"
#include "trelundo/kit/common/Texts.h"
#include "trelundo/platform/uikit/text/AttributedText.h"

#include <gtest/gtest.h>

namespace trelundo::test {
namespace {

constexpr auto normal = UIControlState::normal;
Offer const weekFree{};

class RecordingScreen : public NSObject, public PremiumV2ButtonDelegate {
public:
    void set(ContinueTexts const& texts) override { heard.push_back(texts); }
    std::vector<ContinueTexts> heard;
};

std::vector<std::string> const tags{"V2_A1", "V2_A2", "V2_A3", "V2_A4", "V2_B1", "V2_B2", "V2_B3"};

class PremiumV2ButtonTest : public testing::Test {
protected:
    PremiumV2ButtonTest() { Locale::setPreferredLanguages({"en"}); }

    Ref<PremiumV2Button> show(std::string const& tag, Ref<SKProduct> product, Products products = {}) {
        auto button = make<PremiumV2Button>();
        button->setABTest(tag);
        button->setIntroductoryPriceWasOffered(introductoryPriceWasOffered);
        button->setProducts(std::move(products));
        button->setProduct(std::move(product));
        button->setDelegate(screen);
        return button;
    }
    /// As wide as on the smallest phone.
    Ref<PremiumV2Button> laidOut(std::string const& tag, Ref<SKProduct> product, Products products) {
        auto button = show(tag, std::move(product), std::move(products));
        button->setFrame({0, 0, 288, 64});
        button->layoutIfNeeded();
        return button;
    }
    /// "title|subtitle" as told to the screen.
    std::string continueTexts(std::string const& tag, Ref<SKProduct> product) {
        show(tag, std::move(product))->setSelected(true);
        auto const& texts = screen->heard.back();
        return texts.continueButtonAttributedTitle.string() + "|" + texts.subtitleLabelText;
    }
    /// The own title, and the total block after a bar.
    std::string ownTitle(std::string const& tag, Ref<SKProduct> product, Products products = {}) {
        auto const button = show(tag, std::move(product), std::move(products));
        auto const total = button->totalLabel();
        return button->attributedTitle(normal)->string() + (total ? "|" + total->text().value_or("") : "");
    }

    bool introductoryPriceWasOffered = false;
    Ref<RecordingScreen> screen = make<RecordingScreen>();
};

TEST_F(PremiumV2ButtonTest, TellsTheScreenWhatToSayForEachTag) {
    auto const trialYear = makeProduct("y", "29.99", year, weekFree);
    auto const trialMonth = makeProduct("m", "4.99", month, weekFree);
    std::string const both = "Cancel anytime. Plan automatically renews.";
    std::string const trial = "Continue\nTry 7 days for FREE|";
    std::string const anyTime = "You can cancel your subscription at any time.";
    for (auto const* first : {"V2_A1", "", "v2_a2", "V2_A12"}) {
        EXPECT_EQ(continueTexts(first, trialYear), "Subscribe|Plan automatically renews.") << first;
        EXPECT_EQ(continueTexts(first, trialMonth), "Subscribe|" + both) << first;
    }
    EXPECT_EQ(continueTexts("V2_A2", trialYear), trial + "Plan automatically renews.");
    EXPECT_EQ(continueTexts("V2_A2", trialMonth), trial + anyTime);
    EXPECT_EQ(continueTexts("V2_A3", trialYear), "Continue|");
    EXPECT_EQ(continueTexts("V2_A3", trialMonth), "Continue|" + both);
    EXPECT_EQ(continueTexts("V2_A4", trialYear), "Try Free & Subscribe|");
    for (auto const* tag : {"V2_B1", "V2_B2", "V2_B3"}) EXPECT_EQ(continueTexts(tag, trialMonth), trial);
    EXPECT_EQ(continueTexts("V2_A2", makeProduct("y", "29.99", {{12, SKProductPeriodUnit::month}})),
              "Continue|" + anyTime)
        << "only one year counts as yearly here";

    Offer const paid{.mode = SKProductDiscountPaymentMode::payUpFront};
    EXPECT_EQ(continueTexts("V2_A4", makeProduct("y", "29.99", year, paid)), "Subscribe|") << "no trial";
    EXPECT_EQ(continueTexts("V2_A4", makeProduct("y", "29.99", year, std::nullopt, {weekFree})), "Subscribe|")
        << "a promotion is no trial";
    introductoryPriceWasOffered = true;
    EXPECT_EQ(continueTexts("V2_A4", trialYear), "Subscribe|");
    EXPECT_EQ(continueTexts("V2_A2", trialYear), "Continue|Plan automatically renews.");
    EXPECT_EQ(ownTitle("V2_A2", trialYear), "$29.99/year\n$0.57/week");
}

TEST_F(PremiumV2ButtonTest, MarksAChoiceOnlyWhereThereIsOneAndTellsEverySelection) {
    auto const alone = show("V2_A1", yearly(), {yearly()});
    alone->setSelected(true);
    EXPECT_FALSE(alone->image(normal));
    EXPECT_EQ(alone->backgroundColor(), UIColor::clear());

    auto const button = show("V2_A1", yearly(), {yearly(), monthly()});
    button->setSelectedColor({0, 0, 1});
    button->setSelected(false);
    EXPECT_EQ(button->backgroundColor(), UIColor::clear());
    screen->heard.clear();
    button->setSelected(true);
    button->setSelected(true);
    EXPECT_EQ(button->backgroundColor(), (UIColor{0, 0, 1}));
    EXPECT_EQ(screen->heard.size(), 2U) << "every selection is told, and no deselection";
    screen = nullptr;
    button->setSelected(true); // nobody listens any more
}

TEST_F(PremiumV2ButtonTest, TitlesSayWhatTheTagFindsInThePlan) {
    Products const all{yearly(), monthly()};
    EXPECT_EQ(ownTitle("V2_A1", yearly(), all), "$29.99/year\nSave 50% per year");
    EXPECT_EQ(ownTitle("V2_A1", monthly(), all), "$4.99/month\nMonthly");
    EXPECT_EQ(ownTitle("V2_A3", yearly(), all), "$29.99/year\n$2.49/month");
    EXPECT_EQ(ownTitle("V2_B1", yearly(), all), "Yearly\n\u00A0\u00A0Most Popular\u00A0\u00A0|$29.99");
    EXPECT_EQ(ownTitle("V2_B1", monthly(), all), "Monthly|$4.99");
    EXPECT_EQ(ownTitle("V2_B2", yearly(), all), "$29.99/year\n$2.49/month");
    EXPECT_EQ(ownTitle("V2_B3", yearly(), all), "Darno Premium\nYearly|$29.99");
    EXPECT_EQ(ownTitle("", makeProduct("w", "1.99", sevenDays)), "$1.99/week\nWeekly");
    EXPECT_EQ(ownTitle("", makeProduct("q", "9.99", {{3, SKProductPeriodUnit::month}})), "$9.99\n3 Months");
    EXPECT_EQ(ownTitle("", makeProduct("life", "79.99", std::nullopt)), "$79.99")
        << "no second line for what has no name";

    auto const trialYear = makeProduct("y", "29.99", year, weekFree);
    auto const trialMonth = makeProduct("m", "4.99", month, weekFree);
    Products const trials{trialYear, trialMonth};
    EXPECT_EQ(ownTitle("V2_A1", trialYear, trials), "$29.99/year\nSave 50% per year");
    EXPECT_EQ(ownTitle("V2_A1", trialYear), "$29.99/year\nGet 7 days for FREE!");
    EXPECT_EQ(ownTitle("V2_A1", trialMonth, trials), "$4.99/month\nGet 7 days for FREE!");
    EXPECT_EQ(ownTitle("V2_A2", trialYear, trials), "$29.99/year\nStart your 7 days free trial");
    EXPECT_EQ(ownTitle("V2_A3", trialMonth, trials), "$4.99/month\nTry 7 days Free");
    EXPECT_EQ(ownTitle("V2_A4", trialYear, trials), "$29.99/year\nGet 7 days for FREE!");
    EXPECT_EQ(ownTitle("V2_B1", trialMonth, trials), "Monthly\nTry 7 days Free|$4.99");

    auto const yearBeside = [&](char const* yearlyPrice, char const* price, auto const& period) {
        return ownTitle("V2_A1", makeProduct("y", yearlyPrice, year), {makeProduct("p", price, period)});
    };
    EXPECT_EQ(yearBeside("18", "1", month), "$18.00/year\n$1.50/month") << "dearer by the year";
    EXPECT_EQ(yearBeside("18", "0", month), "$18.00/year\n$1.50/month")
        << "nothing is saved beside a free plan";
    EXPECT_EQ(yearBeside("26", "1", week), "$26.00/year\nSave 50% per year");
    EXPECT_EQ(yearBeside("26", "1", sevenDays), "$26.00/year\nSave 50% per year");
}

TEST_F(PremiumV2ButtonTest, AnotherProductReplacesTheTotalBlockAndTheGroundOfTheBadge) {
    auto const button = laidOut("V2_B1", yearly(), {yearly(), monthly()});
    auto const ground = button->subviews().front();
    auto const subviews = button->subviews().size();
    EXPECT_EQ(ground->backgroundColor(), button->buttonColor());
    EXPECT_NEAR(ground->frame().minX(), button->titleLabel()->frame().minX(), 1e-9);
    button->setProduct(makeProduct("w", "1.99", week));
    button->setProduct(monthly());
    EXPECT_EQ(button->totalLabel()->text(), "$4.99");
    EXPECT_EQ(button->subviews().size(), subviews - 1) << "without a badge";
    button->setABTest("V2_A1");
    button->setProduct(monthly());
    EXPECT_FALSE(button->totalLabel() || button->totalSeparatorView());
    EXPECT_EQ(button->subviews().size(), subviews - 3);
}

TEST_F(PremiumV2ButtonTest, ALonePlanStandsInTheMiddle) {
    auto const middle = [&](char const* tag, Products const& all) {
        return laidOut(tag, yearly(), all)->titleLabel()->frame().midX();
    };
    EXPECT_NEAR(middle("V2_A1", {yearly()}), 144, 0.5);
    EXPECT_LT(middle("V2_A1", {yearly(), monthly()}), 140);
    EXPECT_LT(middle("V2_B1", {yearly()}), 100) << "its price stands at the other end";
}

/// A trial of a year has the longest name of those that stores offer. Only beside a price of hundreds of
/// thousands a title may shrink.
TEST_F(PremiumV2ButtonTest, FitsTheSmallestPhoneInEveryLanguage) {
    auto const plan = [](char const* price, auto const& period, char const* locale = "de_DE@currency=EUR") {
        return makeProduct("plan", price, period, Offer{.period = year}, {}, locale);
    };
    auto const dear = plan("699000", year, "id_ID@currency=IDR");
    Products const all{plan("1229.99", year), plan("104.99", month), plan("41.99", sevenDays), dear};
    for (auto const& language : Texts::kitBundle().localizations()) {
        Locale::setPreferredLanguages({language});
        for (auto const& tag : tags) {
            for (auto const& product : all) {
                auto const title = laidOut(tag, product, all)->titleLabel();
                auto const fit = title->fit();
                auto where = language + " ";
                where.append(tag).append(" ").append(title->text().value_or(""));
                EXPECT_FALSE(fit.truncated || fit.breaksWord) << where;
                EXPECT_GE(fit.scale, product == dear ? 0.85 : 1) << where;
            }
        }
    }
}

} // namespace
} // namespace trelundo::test
