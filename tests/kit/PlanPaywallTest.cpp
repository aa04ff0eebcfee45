#include "tests/support/Products.h"
#include "tests/support/ScreenFixture.h"
#include "trelundo/kit/common/Texts.h"
#include "trelundo/kit/screens/subscription/PremiumV3ViewController.h"
#include "trelundo/kit/screens/subscription/PremiumV4ViewController.h"
#include "trelundo/kit/screens/subscription/PremiumV5ViewController.h"
#include "trelundo/kit/screens/subscription/PremiumV6ViewController.h"
#include "trelundo/platform/uikit/layout/UIStackView.h"
#include "trelundo/platform/uikit/text/AttributedText.h"

namespace trelundo::test {
namespace {

/// The rules that all paywalls of the second generation keep.
template <class Screen> class PlanPaywallTest : public ScreenFixture {};

using Screens = testing::Types<PremiumV2ViewController, PremiumV3ViewController, PremiumV4ViewController,
                               PremiumV5ViewController>;
TYPED_TEST_SUITE(PlanPaywallTest, Screens);

TYPED_TEST(PlanPaywallTest, ThePaletteReachesEveryControl) {
    auto const screen = this->template paywall<TypeParam>({yearly(), monthly()});
    UIColor const background{0.1, 0, 0}, text{0.2, 0, 0}, button{0.3, 0, 0};
    UIColor const terms{0.4, 0, 0}, selected{0.5, 0, 0}, tint{0.6, 0, 0};
    screen->setBackgroundColor(background);
    screen->setTextColor(text);
    screen->setButtonColor(button);
    screen->setTermsColor(terms);
    screen->setSelectedColor(selected);
    screen->setTintColor(tint);
    this->show(screen);

    namespace Key = NSAttributedStringKey;
    EXPECT_EQ(screen->view()->backgroundColor(), background);
    EXPECT_EQ(this->template find<UILabel>("subtitleLabel")->textColor(), text);
    auto const continueButton = this->template find<UIButton>("continueButton");
    EXPECT_EQ(continueButton->backgroundColor(), button);
    auto const words = continueButton->attributedTitle(UIControlState::normal)->runs();
    EXPECT_EQ(words.front().attributes.get(Key::foregroundColor), background);
    auto const plan = this->planButton(0);
    EXPECT_EQ(plan->backgroundColor(), selected);
    EXPECT_EQ(plan->tintColor(), tint);
    auto const runs = plan->attributedTitle(UIControlState::normal)->runs();
    EXPECT_EQ(runs.front().attributes.get(Key::foregroundColor), text);
    EXPECT_EQ(runs.back().attributes.get(Key::foregroundColor), terms);
    auto const link = cast<UIButton>(this->find("linksStackView")->subviews().front());
    EXPECT_EQ(link->titleColor(UIControlState::normal), terms);
}

TYPED_TEST(PlanPaywallTest, NothingIsBoughtWhileNoPlanIsSelected) {
    this->show(this->template paywall<TypeParam>({}));
    this->tap("continueButton");
    this->takeAway();
    auto const screen = this->template paywall<TypeParam>({yearly(), monthly()});
    screen->setSelectedProductIndex(2);
    this->show(screen);
    this->tap("continueButton");
    EXPECT_TRUE(this->store.payments.empty());
    EXPECT_EQ(this->textOf("continueButton"), "");
    this->tap(*this->planButton(1));
    EXPECT_EQ(this->textOf("continueButton"), "Subscribe");
    EXPECT_EQ(this->textOf("subtitleLabel"), "Cancel anytime. Plan automatically renews.");
}

// The screens' own rules

class SecondGenerationTest : public ScreenFixture {
protected:
    /// What the alert over an upgrade screen says after a tap on its continue button; empty when the second
    /// of the products is bought at once.
    std::string upgradeFrom(Products products) {
        auto const screen = paywall<PremiumV4ViewController>(std::move(products));
        screen->setSelectedProductIndex(1);
        show(screen);
        tap("continueButton");
        auto const upgrade = alert();
        takeAway();
        return upgrade ? upgrade->alertTitle().value_or("") : "";
    }
    std::string upgradeTitle(char const* yearlyPrice, char const* price,
                             SKProductSubscriptionPeriod period = month) {
        return upgradeFrom({makeProduct("y", yearlyPrice, year), makeProduct("p", price, period)});
    }
};

TEST_F(SecondGenerationTest, AnUpgradeToAYearIsOfferedWithItsSaving) {
    EXPECT_EQ(upgradeTitle("17.40", "1"), "Upgrade to yearly and save -50% now!") << "dearer";
    EXPECT_EQ(upgradeTitle("50000000", "0.01"), "Upgrade to yearly and save -41666666570% now!")
        << "dearer by far";
    for (auto const& period : {week, sevenDays})
        EXPECT_EQ(upgradeTitle("28.60", "1", period), "Upgrade to yearly and save 50% now!");
    EXPECT_NE(upgradeFrom({makeProduct("y", "29.99", {{12, SKProductPeriodUnit::month}}), monthly()}), "");
    EXPECT_EQ(upgradeFrom({monthly(), makeProduct("second", "3.99", month), yearly()}), "")
        << "only the first monthly plan is upgraded";
    EXPECT_EQ(store.payments.size(), 1U);
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(upgradeTitle("29.99", "0"), "cannot be converted to Int because it is NaN");
}

TEST_F(SecondGenerationTest, TheChecklistEndsWhereTheTopBarWouldCoverIt) {
    show(paywall<PremiumV5ViewController>({yearly(), monthly(), makeProduct("w", "1.99", week)}));
    auto const shownRows = [&] {
        auto const views = find<UIStackView>("unlockStackView")->arrangedSubviews();
        return std::ranges::count_if(views, [](auto const& view) { return !view->isHidden(); }) - 1;
    };
    EXPECT_EQ(shownRows(), 3);
    EXPECT_FALSE(find("unlock1Label")->isHidden());
    EXPECT_GE(find("unlockStackView")->frame().minY(), find("closeButton")->frame().maxY());
    resize("phone-375x667");
    EXPECT_GT(shownRows(), 3);
    resize("phone-390x844");
    EXPECT_EQ(shownRows(), 7) << "all are back, and the family's is not among them";
}

TEST_F(SecondGenerationTest, TheChecklistStaysOnTheScreenInEveryLanguage) {
    for (auto const& language : Texts::kitBundle().localizations()) {
        Locale::setPreferredLanguages({language});
        auto const screen = make<PremiumV5ViewController>();
        screen->setSource("FamilySharing");
        show(screen);
        for (int i = 1; i <= 9; ++i) {
            auto const label = find<UILabel>("unlock" + std::to_string(i) + "Label");
            EXPECT_LE(label->convertRectTo(label->bounds(), nullptr).maxX(), 320 - 16)
                << language << " " << i;
            EXPECT_FALSE(label->fit().truncated) << language << " " << i;
        }
        takeAway();
    }
}

TEST_F(SecondGenerationTest, TheTrialPaywallTakesItsProductAtAnyTime) {
    auto const screen = show(paywall<PremiumV6ViewController>({yearly()}));
    auto const texts = [&] { return textOf("continueButton") + "|" + textOf("subtitleLabel"); };
    EXPECT_EQ(texts(), "|") << "no trial, no words";
    auto const trial = makeProduct("trial", "29.99", month, Offer{});
    screen->setIntroductoryPriceWasOffered(true);
    screen->setProduct(trial);
    EXPECT_EQ(texts(), "|") << "a trial offered before is not promised again";
    screen->setIntroductoryPriceWasOffered(false);
    screen->setProduct(trial);
    EXPECT_EQ(texts(), "Try 7 Days Free|$29.99/year after trial ends");
}

} // namespace
} // namespace trelundo::test
