#include "platform/uikit/controllers/UIAlertController.h"
#include "platform/uikit/layout/UIStackView.h"
#include "platform/uikit/text/AttributedText.h"
#include "screens/subscription/PremiumV3ViewController.h"
#include "screens/subscription/PremiumV4ViewController.h"
#include "screens/subscription/PremiumV5ViewController.h"
#include "screens/subscription/PremiumV6ViewController.h"
#include "tests/support/Products.h"
#include "tests/support/ScreenFixture.h"

#include <gmock/gmock.h>

namespace trelundo::test {
namespace {

using testing::ElementsAre;

Ref<SKProduct> weekly() { return makeProduct("weekly", "1.99", week); }

/// The rules that all paywalls of the second generation keep.
template <class Screen> class PlanPaywallTest : public ScreenFixture {
protected:
    Ref<Screen> make(Products products) {
        auto screen = trelundo::make<Screen>();
        screen->setProducts(std::move(products));
        if constexpr (requires { screen->setFeatures({}); }) screen->setFeatures({{"All Templates", "none"}});
        return screen;
    }
    std::vector<std::string> paid() {
        std::vector<std::string> identifiers;
        for (auto const& payment : this->store.payments) identifiers.push_back(payment.productIdentifier);
        return identifiers;
    }
};

using Screens = testing::Types<PremiumV2ViewController, PremiumV3ViewController, PremiumV4ViewController,
                               PremiumV5ViewController>;
TYPED_TEST_SUITE(PlanPaywallTest, Screens);

TYPED_TEST(PlanPaywallTest, ThePaletteReachesEveryControl) {
    auto const screen = this->make({yearly(), monthly()});
    UIColor const background{0.1, 0, 0};
    UIColor const text{0.2, 0, 0};
    UIColor const button{0.3, 0, 0};
    UIColor const terms{0.4, 0, 0};
    UIColor const selected{0.5, 0, 0};
    UIColor const tint{0.6, 0, 0};
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
    EXPECT_EQ(continueButton->attributedTitle(UIControlState::normal)
                  ->runs()
                  .front()
                  .attributes.get(Key::foregroundColor),
              background);
    auto const plan = this->planButton(0);
    EXPECT_EQ(plan->backgroundColor(), selected);
    EXPECT_EQ(plan->tintColor(), tint);
    auto const runs = plan->attributedTitle(UIControlState::normal)->runs();
    EXPECT_EQ(runs.front().attributes.get(Key::foregroundColor), text);
    EXPECT_EQ(runs.back().attributes.get(Key::foregroundColor), terms);
    auto const link = cast<UIButton>(this->find("linksStackView")->subviews().front());
    EXPECT_EQ(link->titleColor(UIControlState::normal), terms);
}

TYPED_TEST(PlanPaywallTest, ATapSelectsAndASecondTapBuys) {
    this->show(this->make({makeProduct("once", "9.99", std::nullopt), monthly()}));
    EXPECT_TRUE(this->planButton(0)->isSelected());
    this->tap(*this->planButton(1));
    EXPECT_FALSE(this->planButton(0)->isSelected());
    EXPECT_TRUE(this->planButton(1)->isSelected());
    EXPECT_THAT(this->paid(), testing::IsEmpty());
    this->tap(*this->planButton(1));
    EXPECT_THAT(this->paid(), ElementsAre("monthly"));
}

TYPED_TEST(PlanPaywallTest, ALonePlanIsBoughtByTheContinueButtonOnly) {
    this->show(this->make({yearly()}));
    this->tap(*this->planButton(0));
    EXPECT_THAT(this->paid(), testing::IsEmpty());
    this->tap("continueButton");
    EXPECT_THAT(this->paid(), ElementsAre("yearly"));
}

TYPED_TEST(PlanPaywallTest, AnIndexOutsideTheListSelectsNone) {
    auto const screen = this->make({yearly(), monthly()});
    screen->setSelectedProductIndex(2);
    this->show(screen);
    this->tap("continueButton");
    EXPECT_THAT(this->paid(), testing::IsEmpty());
    EXPECT_EQ(this->textOf("continueButton"), "");
    this->tap(*this->planButton(1));
    EXPECT_EQ(this->textOf("continueButton"), "Subscribe");
    EXPECT_EQ(this->textOf("subtitleLabel"), "Cancel anytime. Plan automatically renews.");
}

TYPED_TEST(PlanPaywallTest, WithoutProductsNothingCanBeBought) {
    this->show(this->make({}));
    this->tap("continueButton");
    EXPECT_THAT(this->paid(), testing::IsEmpty());
}

// The screens' own rules

class SecondGenerationTest : public ScreenFixture {
protected:
    std::vector<std::string> namesIn(std::string const& stack) {
        std::vector<std::string> names;
        for (auto const& view : find<UIStackView>(stack)->arrangedSubviews())
            names.push_back(view->accessibilityIdentifier());
        return names;
    }
    /// The alert over an upgrade screen after a tap on its continue button; null when it bought at once.
    Ref<UIAlertController> upgradeFrom(Products products, int selected) {
        auto screen = make<PremiumV4ViewController>();
        screen->setProducts(std::move(products));
        screen->setSelectedProductIndex(selected);
        screen->setFeatures({{"All Templates", "none"}});
        show(screen);
        tap("continueButton");
        shell.advance(0.5);
        return screen->presentedViewController() ? cast<UIAlertController>(screen->presentedViewController())
                                                 : nullptr;
    }
    std::string upgradeTitle(char const* yearlyPrice, char const* price,
                             SKProductSubscriptionPeriod period = month) {
        auto const alert =
            upgradeFrom({makeProduct("y", yearlyPrice, year), makeProduct("p", price, period)}, 1);
        auto title = alert->alertTitle().value_or("");
        host->dismiss(false);
        shell.advance(0.1);
        return title;
    }
};

TEST_F(SecondGenerationTest, TheHeadlineFollowsWhetherTheUserSaved) {
    show(make<PremiumV3ViewController>());
    EXPECT_THAT(namesIn("unlockStackView"), ElementsAre("unlock1Label", "logoImageView"));
    EXPECT_EQ(find("backgroundImageView")->alpha(), 0.6) << "dimmed on a small screen";
    host->dismiss(false);
    shell.advance(0.1);
    auto saved = make<PremiumV3ViewController>();
    saved->setSavedOnce(true);
    show(saved);
    EXPECT_THAT(namesIn("unlockStackView"), ElementsAre("unlock2Label", "unlock3Label"));
    EXPECT_EQ(find<UIStackView>("unlockStackView")->spacing(), 12);
    EXPECT_EQ(textOf("unlock2Label"), "You’ve run out of free saves");
}

TEST_F(SecondGenerationTest, UpgradesAreOfferedInTensOfPercent) {
    EXPECT_EQ(upgradeTitle("6.60", "1"), "Upgrade to yearly and save 50% now!") << "0.45";
    EXPECT_EQ(upgradeTitle("6.72", "1"), "Upgrade to yearly and save 40% now!") << "0.44";
    EXPECT_EQ(upgradeTitle("5.40", "1"), "Upgrade to yearly and save 60% now!") << "0.55";
    EXPECT_EQ(upgradeTitle("17.40", "1"), "Upgrade to yearly and save -50% now!") << "dearer";
    EXPECT_EQ(upgradeTitle("50000000", "0.01"), "Upgrade to yearly and save -41666666570% now!")
        << "dearer by far";
    EXPECT_EQ(upgradeTitle("28.60", "1", week), "Upgrade to yearly and save 50% now!");
    EXPECT_EQ(upgradeTitle("28.60", "1", sevenDays), "Upgrade to yearly and save 50% now!");
}

TEST_F(SecondGenerationTest, AnUpgradeAlertBuysWhatIsChosen) {
    auto const alert = upgradeFrom({yearly(), monthly(), weekly()}, 2);
    ASSERT_TRUE(alert);
    ASSERT_EQ(alert->actions().size(), 2U);
    EXPECT_EQ(alert->actions()[0]->title(), "Continue with weekly");
    EXPECT_EQ(alert->preferredAction(), alert->actions()[1]);
    alert->performAction(*alert->actions()[1]);
    shell.advance(1);
    ASSERT_EQ(store.payments.size(), 1U);
    EXPECT_EQ(store.payments[0].productIdentifier, "yearly");
}

TEST_F(SecondGenerationTest, AnUpgradeIsOfferedOnlyFromTheFirstShorterPlanToAYear) {
    SKProductSubscriptionPeriod const twelveMonths{12, SKProductPeriodUnit::month};
    EXPECT_TRUE(upgradeFrom({makeProduct("y", "29.99", twelveMonths), monthly()}, 1));
    host->dismiss(false);
    shell.advance(0.1);
    EXPECT_FALSE(upgradeFrom({monthly(), weekly()}, 0)) << "no year on offer";
    host->dismiss(false);
    shell.advance(0.1);
    EXPECT_FALSE(upgradeFrom({yearly(), monthly(), makeProduct("second", "3.99", month)}, 2));
    EXPECT_EQ(store.payments.size(), 2U);
}

TEST_F(SecondGenerationTest, AFreePlanCannotBeUpgradedFrom) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(upgradeTitle("29.99", "0"), "cannot be converted to Int because it is NaN");
}

TEST_F(SecondGenerationTest, TheChecklistMentionsTheFamilyOnlyToFamilies) {
    show(make<PremiumV5ViewController>());
    EXPECT_EQ(namesIn("unlockStackView").size(), 8U);
    EXPECT_EQ(namesIn("unlockStackView").back(), "unlock8StackView");
    host->dismiss(false);
    shell.advance(0.1);
    auto family = make<PremiumV5ViewController>();
    family->setSource("FamilySharing");
    show(family);
    EXPECT_EQ(namesIn("unlockStackView").back(), "unlock9StackView");
    EXPECT_EQ(textOf("unlock9Label"), "Free family sharing");
}

TEST_F(SecondGenerationTest, AFaintBorderMarksThePlansNotSelected) {
    auto screen = make<PremiumV5ViewController>();
    screen->setProducts({yearly(), monthly()});
    show(screen);
    auto const alphas = [&] {
        return std::vector{planButton(0)->layer().borderColor().alpha,
                           planButton(1)->layer().borderColor().alpha};
    };
    EXPECT_THAT(alphas(), ElementsAre(0, 0.1));
    tap(*planButton(1));
    EXPECT_THAT(alphas(), ElementsAre(0.1, 0));
    EXPECT_EQ(planButton(0)->layer().borderWidth(), 1);
}

TEST_F(SecondGenerationTest, TheTrialPaywallTakesItsProductAtAnyTime) {
    auto screen = make<PremiumV6ViewController>();
    screen->setFeatures({{"All Templates", "none"}});
    screen->setProduct(yearly());
    show(screen);
    EXPECT_EQ(textOf("continueButton"), "") << "no trial, no words";
    screen->setProduct(makeProduct("trial", "29.99", month, Offer{}));
    EXPECT_EQ(textOf("continueButton"), "Try 7 Days Free");
    EXPECT_EQ(textOf("subtitleLabel"), "$29.99/year after trial ends");
    screen->setProduct(monthly());
    EXPECT_EQ(textOf("continueButton"), "Try 7 Days Free") << "left as it was";
    tap("continueButton");
    screen->setProduct(nullptr);
    tap("continueButton");
    ASSERT_EQ(store.payments.size(), 1U);
    EXPECT_EQ(store.payments[0].productIdentifier, "monthly");
}

TEST_F(SecondGenerationTest, ATrialOfferedBeforeIsNotPromisedAgain) {
    auto screen = make<PremiumV6ViewController>();
    screen->setFeatures({{"All Templates", "none"}});
    screen->setIntroductoryPriceWasOffered(true);
    screen->setProduct(makeProduct("trial", "29.99", year, Offer{}));
    show(screen);
    EXPECT_EQ(textOf("continueButton"), "");
    EXPECT_EQ(textOf("subtitleLabel"), "");
}

} // namespace
} // namespace trelundo::test
