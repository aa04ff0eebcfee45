#pragma once

#include "tools/paywall/screens/PropertyValues.h" // IWYU pragma: export
#include "tools/paywall/screens/Screens.h"

#include <initializer_list>
#include <map>
#include <optional>
#include <string>

namespace trelundo::paywall {

using Properties = std::map<std::string, ScreenType::Setter>;

/// A setter that parses its text and hands the value to a member function of Screen.
template <class Screen, class Argument, class Parse>
ScreenType::Setter property(void (Screen::*assign)(Argument), Parse parse) {
    return [assign, parse](UIViewController& screen, std::string const& value) {
        (dynamic_cast<Screen&>(screen).*assign)(parse(value));
    };
}

// Values as PropertyValues.h has them, with what only a screen knows. "none" is absent or empty.

std::string parseText(std::string const& value);
std::optional<std::string> parseOptionalText(std::string const& value);
/// The loaded product with this identifier; "none": null. Any other text throws a Failure.
Ref<SKProduct> parseProduct(std::string const& identifier);
/// Loaded products with commas between; "none": no product.
Products parseProducts(std::string const& identifiers);
/// A discount for the offer of this identifier; "none": null.
Ref<SKPaymentDiscount> parseDiscount(std::string const& offer);
/// PRODUCT=OFFER with commas between; "none": no discount.
ScreenType::PaymentDiscounts parseDiscounts(std::string const& text);

/// `own` and what every screen of BaseViewController has.
Properties withBase(Properties own);
/// The named colours of a palette.
Properties colorProperties(std::initializer_list<char const*> names);

template <class Screen> ScreenType screenType(std::string name, Properties properties) {
    return {.name = std::move(name),
            .make = [] { return Ref<UIViewController>{make<Screen>()}; },
            .properties = std::move(properties)};
}

/// The product at `select`; null when there is none.
Ref<SKProduct> productAt(Products const& products, int select);

/// A screen of one product: that at the selected index.
template <class Screen> ScreenType oneProductScreen(std::string name, Properties own) {
    own.emplace("product", property(&Screen::setProduct, parseProduct));
    auto type = screenType<Screen>(std::move(name), withBase(std::move(own)));
    type.setProducts = [](UIViewController& screen, Products const& products, int select) {
        dynamic_cast<Screen&>(screen).setProduct(productAt(products, select));
    };
    return type;
}

} // namespace trelundo::paywall
