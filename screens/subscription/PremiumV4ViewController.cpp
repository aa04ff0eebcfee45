#include "screens/subscription/PremiumV4ViewController.h"

#include "common/Common.h"
#include "controls/PlanTerms.h"
#include "platform/foundation/Strings.h"
#include "platform/uikit/controllers/UIAlertController.h"

#include <algorithm>
#include <initializer_list>

namespace trelundo {

namespace {

/// The first product whose period is one of `periods`; null: none.
Ref<SKProduct> firstOf(Products const& products, std::initializer_list<SKProductSubscriptionPeriod> periods) {
    auto const found = std::ranges::find_if(products, [&](Ref<SKProduct> const& product) {
        return product->subscriptionPeriod() &&
               std::ranges::count(periods, *product->subscriptionPeriod()) > 0;
    });
    return found == products.end() ? nullptr : *found;
}

} // namespace

void PremiumV4ViewController::purchaseProduct() {
    auto const product = selectedProduct();
    if (!product) return;
    using enum SKProductPeriodUnit;
    auto const yearly = firstOf(products(), {{1, year}, {12, month}});
    if (yearly && product == firstOf(products(), {{1, month}}))
        offerUpgrade({product, yearly, 12, "Continue with monthly"});
    else if (yearly && product == firstOf(products(), {{1, week}, {7, day}}))
        offerUpgrade({product, yearly, 52, "Continue with weekly"});
    else
        purchasePayment(makePayment(*product));
}

void PremiumV4ViewController::offerUpgrade(Upgrade const& upgrade) {
    int const saving =
        savingPercentage(upgrade.yearly->price(), upgrade.product->price(), upgrade.periodsPerYear);
    // The fourth sign is not part of the placeholder: it stays as the percent sign.
    auto const title = replacingFirstOccurrence(Common::text("Upgrade to yearly and save %%%% now!"), "%%%",
                                                std::to_string(saving));
    auto const alert = make<UIAlertController>(title, std::string{}, UIAlertControllerStyle::alert);
    auto const addChoice = [&](char const* text, Ref<SKProduct> const& product) {
        auto const buy = [weak = Weak<PremiumV4ViewController>{this}, product](UIAlertAction&) {
            if (auto screen = weak.lock()) screen->purchasePayment(makePayment(*product));
        };
        auto action = make<UIAlertAction>(Common::text(text), UIAlertActionStyle::defaultStyle, buy);
        alert->addAction(action);
        return action;
    };
    addChoice(upgrade.keepText, upgrade.product);
    alert->setPreferredAction(addChoice("Upgrade to yearly", upgrade.yearly));
    present(alert, true);
}

} // namespace trelundo
