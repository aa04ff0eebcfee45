#include "tools/paywall/screens/Screens.h"

#include "tools/paywall/Failure.h"
#include "tools/paywall/screens/OfferScreens.h"
#include "tools/paywall/screens/ScreenProperties.h"
#include "tools/paywall/store/StoreAccess.h"
#include "trelundo/kit/screens/subscription/PremiumV3ViewController.h"
#include "trelundo/kit/screens/subscription/PremiumV4ViewController.h"
#include "trelundo/kit/screens/subscription/PremiumV5ViewController.h"
#include "trelundo/kit/screens/subscription/PremiumV6ViewController.h"
#include "trelundo/kit/screens/subscription/PremiumViewController.h"
#include "trelundo/platform/foundation/Strings.h"

#include <algorithm>
#include <fmt/format.h>

namespace trelundo::paywall {

namespace {

/// A screen of several products.
template <class Screen> ScreenType planScreen(std::string name, Properties own) {
    own.emplace("products", property(&Screen::setProducts, parseProducts));
    return {.name = std::move(name),
            .make = [] { return Ref<UIViewController>{make<Screen>()}; },
            .properties = withBase(std::move(own)),
            .setDiscounts = [](auto&, auto&) {},
            .setProducts =
                [](UIViewController& screen, Products const& products, int select) {
                    auto& paywall = dynamic_cast<Screen&>(screen);
                    if (select != 0) paywall.setSelectedProductIndex(select);
                    paywall.setProducts(products);
                }};
}

ScreenType firstPaywall() {
    auto type = planScreen<PremiumViewController>(
        "PremiumViewController",
        {{"selectedProductIndex", property(&PremiumViewController::setSelectedProductIndex, parseInteger)},
         {"features", property(&PremiumViewController::setFeatures, parseFeatures)},
         {"paymentDiscounts", property(&PremiumViewController::setPaymentDiscounts, parseDiscounts)}});
    type.setDiscounts = [](UIViewController& screen, ScreenType::PaymentDiscounts const& discounts) {
        dynamic_cast<PremiumViewController&>(screen).setPaymentDiscounts(discounts);
    };
    return type;
}

/// A paywall of the second generation, whose palette is public; `own` are its further properties.
template <class Screen> ScreenType secondGeneration(std::string name, Properties own = {}) {
    using Base = PlanPaywallViewController;
    own.merge(Properties{{"selectedProductIndex", property(&Base::setSelectedProductIndex, parseInteger)},
                         {"backgroundColor", property(&Base::setBackgroundColor, parseColor)},
                         {"textColor", property(&Base::setTextColor, parseColor)},
                         {"buttonColor", property(&Base::setButtonColor, parseColor)},
                         {"termsColor", property(&Base::setTermsColor, parseColor)},
                         {"selectedColor", property(&Base::setSelectedColor, parseColor)},
                         {"tintColor", property(&Base::setTintColor, parseColor)}});
    return planScreen<Screen>(std::move(name), std::move(own));
}

/// The trial paywall: the one product at the selected index, none when there is none.
ScreenType trialPaywall() {
    using Screen = PremiumV6ViewController;
    return {.name = "PremiumV6ViewController",
            .make = [] { return Ref<UIViewController>{make<Screen>()}; },
            .properties = withBase({{"product", property(&Screen::setProduct, parseProduct)},
                                    {"backgroundColor", property(&Screen::setBackgroundColor, parseColor)},
                                    {"buttonColor", property(&Screen::setButtonColor, parseColor)},
                                    {"termsColor", property(&Screen::setTermsColor, parseColor)},
                                    {"features", property(&Screen::setFeatures, parseFeatures)}}),
            .setDiscounts = [](auto&, auto&) {},
            .setProducts =
                [](UIViewController& screen, Products const& products, int select) {
                    dynamic_cast<Screen&>(screen).setProduct(productAt(products, select));
                }};
}

} // namespace

std::vector<ScreenType> const& screens() {
    static std::vector<ScreenType> const all{
        firstPaywall(),
        secondGeneration<PremiumV2ViewController>(
            "PremiumV2ViewController",
            {{"features", property(&PremiumV2ViewController::setFeatures, parseFeatures)}}),
        secondGeneration<PremiumV3ViewController>(
            "PremiumV3ViewController",
            {{"savedOnce", property(&PremiumV3ViewController::setSavedOnce, parseBool)}}),
        secondGeneration<PremiumV4ViewController>(
            "PremiumV4ViewController",
            {{"features", property(&PremiumV2ViewController::setFeatures, parseFeatures)}}),
        secondGeneration<PremiumV5ViewController>("PremiumV5ViewController"),
        trialPaywall(),
        offerSheet(),
        percentageOfferWithBadge(),
        sentenceOffer(),
        percentageOffer(),
        billingNotice(),
    };
    return all;
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
        auto const separator = entry.find('=');
        if (separator == std::string::npos)
            failUsage(fmt::format("\"{}\" is not of the form PRODUCT=OFFER", entry));
        discounts[entry.substr(0, separator)] = signedDiscount(entry.substr(separator + 1));
    }
    return discounts;
}

ScreenType const* findScreen(std::string const& name) {
    auto const found = std::ranges::find(screens(), name, &ScreenType::name);
    return found == screens().end() ? nullptr : &*found;
}

void setProperty(ScreenType const& type, UIViewController& screen, std::string const& name,
                 std::string const& value) {
    auto const setter = type.properties.find(name);
    if (setter == type.properties.end()) failUsage(fmt::format("{} has no property \"{}\"", type.name, name));
    try {
        setter->second(screen, value);
    } catch (Failure const& failure) {
        failUsage(fmt::format("{}: {}", name, failure.message));
    }
}

} // namespace trelundo::paywall
