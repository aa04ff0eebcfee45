#include "tools/paywall/screens/ScreenProperties.h"

#include "tools/paywall/Failure.h"
#include "tools/paywall/store/StoreAccess.h"
#include "trelundo/kit/controls/Palette.h"
#include "trelundo/kit/screens/base/BaseViewController.h"
#include "trelundo/kit/store/PremiumManager.h"
#include "trelundo/platform/foundation/Strings.h"

#include <algorithm>
#include <fmt/core.h>

namespace trelundo::paywall {

Properties withBase(Properties own) {
    using Base = BaseViewController;
    own.merge(Properties{
        {"source", property(&Base::setSource, parseText)},
        {"premiumId", property(&Base::setPremiumId, parseText)},
        {"abTest", property(&Base::setABTest, parseText)},
        {"isSmallScreen", property(&Base::setSmallScreen, parseBool)},
        {"introductoryPriceWasOffered", property(&Base::setIntroductoryPriceWasOffered, parseBool)},
    });
    return own;
}

Properties colorProperties(std::initializer_list<char const*> names) {
    static Properties const all{
        {"backgroundColor", property(&BackgroundColored::setBackgroundColor, parseColor)},
        {"textColor", property(&TextColored::setTextColor, parseColor)},
        {"buttonColor", property(&ButtonColored::setButtonColor, parseColor)},
        {"buttonTextColor", property(&ButtonTextColored::setButtonTextColor, parseColor)},
        {"termsColor", property(&TermsColored::setTermsColor, parseColor)},
        {"selectedColor", property(&SelectedColored::setSelectedColor, parseColor)},
    };
    Properties chosen;
    for (auto const* name : names) chosen.insert(*all.find(name));
    return chosen;
}

Ref<SKProduct> productAt(Products const& products, int select) {
    auto const index = static_cast<std::size_t>(select);
    return index < products.size() ? products[index] : nullptr;
}

std::string parseText(std::string const& value) { return value == "none" ? std::string{} : value; }

std::optional<std::string> parseOptionalText(std::string const& value) {
    return value == "none" ? std::nullopt : std::optional{value};
}

Ref<SKProduct> parseProduct(std::string const& identifier) {
    if (identifier == "none") return nullptr;
    auto const& loaded = PremiumManager::sharedInstance().products();
    auto const found = std::ranges::find(loaded, identifier, &SKProduct::productIdentifier);
    if (found == loaded.end()) failUsage(fmt::format("no product \"{}\" was loaded", identifier));
    return *found;
}

Products parseProducts(std::string const& identifiers) {
    Products products;
    if (identifiers == "none") return products;
    for (auto const& identifier : split(identifiers, ',')) products.push_back(parseProduct(identifier));
    return products;
}

Ref<SKPaymentDiscount> parseDiscount(std::string const& offer) {
    return offer == "none" ? nullptr : signedDiscount(offer);
}

ScreenType::PaymentDiscounts parseDiscounts(std::string const& text) {
    ScreenType::PaymentDiscounts discounts;
    if (text == "none") return discounts;
    for (auto const& entry : split(text, ',')) {
        auto const [product, offer] = parseAssignment(entry, "PRODUCT=OFFER");
        discounts[product] = signedDiscount(offer);
    }
    return discounts;
}

} // namespace trelundo::paywall
