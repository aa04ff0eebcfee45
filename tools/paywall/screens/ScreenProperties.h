#pragma once

#include "tools/paywall/screens/PropertyValues.h"
#include "tools/paywall/screens/Screens.h"
#include "trelundo/kit/screens/base/BaseViewController.h"

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

inline std::string parseText(std::string const& value) { return value == "none" ? std::string{} : value; }

inline std::optional<std::string> parseOptionalText(std::string const& value) {
    return value == "none" ? std::nullopt : std::optional{value};
}

/// `own` and what every screen of BaseViewController has.
inline Properties withBase(Properties own) {
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

/// The product at `select`; null when there is none.
inline Ref<SKProduct> productAt(Products const& products, int select) {
    auto const index = static_cast<std::size_t>(select);
    return index < products.size() ? products[index] : nullptr;
}

/// The loaded product with this identifier; "none": null. Any other text throws a Failure.
Ref<SKProduct> parseProduct(std::string const& identifier);

/// Loaded products with commas between; "none": no product.
Products parseProducts(std::string const& identifiers);

/// A discount for the offer of this identifier; "none": null.
Ref<SKPaymentDiscount> parseDiscount(std::string const& offer);

/// PRODUCT=OFFER with commas between; "none": no discount.
ScreenType::PaymentDiscounts parseDiscounts(std::string const& text);

} // namespace trelundo::paywall
