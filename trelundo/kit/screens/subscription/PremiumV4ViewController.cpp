#include "trelundo/kit/screens/subscription/PremiumV4ViewController.h"

#include "trelundo/kit/common/Texts.h"
#include "trelundo/kit/plans/internal/Saving.h"
#include "trelundo/platform/foundation/Strings.h"
#include "trelundo/platform/uikit/controllers/UIAlertController.h"

namespace trelundo {

void PremiumV4ViewController::purchaseProduct() {
    auto const product = selectedProduct();
    if (!product) return;
    auto const yearly = firstWithPeriod(products(), {oneYear, twelveMonths});
    if (yearly && product == firstWithPeriod(products(), {oneMonth}))
        offerUpgrade({product, yearly, 12, "Continue with monthly"});
    else if (yearly && product == firstWithPeriod(products(), {oneWeek, sevenDays}))
        offerUpgrade({product, yearly, 52, "Continue with weekly"});
    else
        purchase(product);
}

void PremiumV4ViewController::offerUpgrade(Upgrade const& upgrade) {
    auto const saving =
        savingPercentage(upgrade.yearly->price(), upgrade.product->price(), upgrade.periodsPerYear);
    // The fourth sign is not part of the placeholder: it stays as the percent sign.
    auto const title = replacingFirstOccurrence(Texts::text("Upgrade to yearly and save %%%% now!"), "%%%",
                                                std::to_string(saving));
    auto const alert = make<UIAlertController>(title, std::string{}, UIAlertControllerStyle::alert);
    auto const addChoice = [&](char const* text, Ref<SKProduct> const& product) {
        auto const buy = [weak = Weak<PremiumV4ViewController>{this}, product](UIAlertAction&) {
            if (auto screen = weak.lock()) screen->purchase(product);
        };
        auto action = make<UIAlertAction>(Texts::text(text), UIAlertActionStyle::defaultStyle, buy);
        alert->addAction(action);
        return action;
    };
    addChoice(upgrade.keepText, upgrade.product);
    alert->setPreferredAction(addChoice("Upgrade to yearly", upgrade.yearly));
    present(alert, true);
}

} // namespace trelundo
