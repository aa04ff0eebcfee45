#include "tools/paywall/Screens.h"

#include "screens/subscription/PremiumViewController.h"
#include "tools/paywall/Failure.h"
#include "tools/paywall/PropertyValues.h"

#include <algorithm>
#include <fmt/format.h>

namespace trelundo::paywall {

namespace {

using Properties = std::map<std::string, ScreenType::Setter>;

/// A setter that parses its text and hands the value to a member function of Screen.
template <class Screen, class Argument, class Parse>
ScreenType::Setter property(void (Screen::*assign)(Argument), Parse parse) {
    return [assign, parse](UIViewController& screen, std::string const& value) {
        (dynamic_cast<Screen&>(screen).*assign)(parse(value));
    };
}

std::string text(std::string const& value) { return value == "none" ? std::string{} : value; }

Properties baseProperties() {
    return {
        {"source", property(&BaseViewController::setSource, text)},
        {"premiumId", property(&BaseViewController::setPremiumId, text)},
        {"abTest", property(&BaseViewController::setABTest, text)},
        {"isSmallScreen", property(&BaseViewController::setSmallScreen, parseBool)},
        {"introductoryPriceWasOffered",
         property(&BaseViewController::setIntroductoryPriceWasOffered, parseBool)},
    };
}

Properties with(Properties own) {
    own.merge(baseProperties());
    return own;
}

/// A screen of several products.
template <class Screen> ScreenType planScreen(std::string name, Properties own) {
    return {.name = std::move(name),
            .make = [] { return Ref<BaseViewController>{make<Screen>()}; },
            .properties = with(std::move(own)),
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
         {"features", property(&PremiumViewController::setFeatures, parseFeatures)}});
    type.setDiscounts = [](UIViewController& screen, ScreenType::PaymentDiscounts const& discounts) {
        dynamic_cast<PremiumViewController&>(screen).setPaymentDiscounts(discounts);
    };
    return type;
}

} // namespace

std::vector<ScreenType> const& screens() {
    static std::vector<ScreenType> const all{firstPaywall()};
    return all;
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
