#include "tools/paywall/screens/Screens.h"

#include "tools/paywall/Failure.h"
#include "tools/paywall/output/Suggestion.h"
#include "tools/paywall/screens/OfferScreens.h"
#include "tools/paywall/screens/ScreenProperties.h"
#include "trelundo/kit/screens/subscription/PremiumV3ViewController.h"
#include "trelundo/kit/screens/subscription/PremiumV4ViewController.h"
#include "trelundo/kit/screens/subscription/PremiumV5ViewController.h"
#include "trelundo/kit/screens/subscription/PremiumV6ViewController.h"
#include "trelundo/kit/screens/subscription/PremiumViewController.h"

#include <algorithm>
#include <fmt/core.h>

namespace trelundo::paywall {

namespace {

/// A screen of several products; `own` are its further properties.
template <class Screen> ScreenType planScreen(std::string name, Properties own) {
    own.merge(Properties{
        {"products", property(&Screen::setProducts, parseProducts)},
        {"selectedProductIndex", property(&Screen::setSelectedProductIndex, parseInteger)},
    });
    auto type = screenType<Screen>(std::move(name), withBase(std::move(own)));
    type.setProducts = [](UIViewController& screen, Products const& products, int select) {
        auto& paywall = dynamic_cast<Screen&>(screen);
        if (select != 0) paywall.setSelectedProductIndex(select);
        paywall.setProducts(products);
    };
    return type;
}

ScreenType firstPaywall() {
    using Screen = PremiumViewController;
    auto type =
        planScreen<Screen>("PremiumViewController",
                           {{"features", property(&Screen::setFeatures, parseFeatures)},
                            {"paymentDiscounts", property(&Screen::setPaymentDiscounts, parseDiscounts)}});
    type.setDiscounts = [](UIViewController& screen, ScreenType::PaymentDiscounts const& discounts) {
        dynamic_cast<Screen&>(screen).setPaymentDiscounts(discounts);
    };
    return type;
}

/// A paywall of the second generation, whose palette is public; `own` are its further properties.
template <class Screen> ScreenType secondGeneration(std::string name, Properties own = {}) {
    own.merge(
        colorProperties({"backgroundColor", "textColor", "buttonColor", "termsColor", "selectedColor"}));
    own.emplace("tintColor", property(&PlanPaywallViewController::setTintColor, parseColor));
    return planScreen<Screen>(std::move(name), std::move(own));
}

ScreenType trialPaywall() {
    using Screen = PremiumV6ViewController;
    auto own = colorProperties({"backgroundColor", "buttonColor", "termsColor"});
    own.emplace("features", property(&Screen::setFeatures, parseFeatures));
    return oneProductScreen<Screen>("PremiumV6ViewController", std::move(own));
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

ScreenType const* findScreen(std::string const& name) {
    auto const found = std::ranges::find(screens(), name, &ScreenType::name);
    return found == screens().end() ? nullptr : &*found;
}

void setProperty(ScreenType const& type, UIViewController& screen, std::string const& name,
                 std::string const& value) {
    auto const setter = type.properties.find(name);
    if (setter == type.properties.end()) {
        std::vector<std::string> names;
        for (auto const& [each, set] : type.properties) names.push_back(each);
        failUsage(fmt::format("{} has no property \"{}\"{}", type.name, name, suggestion(name, names)));
    }
    readFor(name, [&] { setter->second(screen, value); });
}

} // namespace trelundo::paywall
