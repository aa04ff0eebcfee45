#pragma once

#include "trelundo/kit/store/Products.h"
#include "trelundo/platform/storekit/SKPayment.h"
#include "trelundo/platform/uikit/controllers/UIViewController.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace trelundo::paywall {

/// What a screen class needs from the tool: how to make one, and its public properties by name.
struct ScreenType {
    using PaymentDiscounts = std::map<std::string, Ref<SKPaymentDiscount>>;
    using Setter = std::function<void(UIViewController& screen, std::string const& value)>;

    std::string name;
    std::function<Ref<UIViewController>()> make;
    /// Every public property that a command line may set, texts parsed. "none" assigns absent.
    std::map<std::string, Setter> properties;
    /// Payment discounts by product identifier.
    std::function<void(UIViewController&, PaymentDiscounts const&)> setDiscounts = [](auto&, auto&) {};
    std::function<void(UIViewController&, Products const&, int select)> setProducts = [](auto&, auto&, int) {
    };
    /// The one payment discount of a one-product screen; empty for screens that take none.
    std::function<void(UIViewController&, Ref<SKPaymentDiscount> const&)> setDiscount = nullptr;
    /// The root frame is the device in both; over the full screen the host's own screen stays visible
    /// beneath.
    UIModalPresentationStyle presentation = UIModalPresentationStyle::fullScreen;
};

std::vector<ScreenType> const& screens();
/// Null when the name is unknown.
ScreenType const* findScreen(std::string const& name);
/// Assigns one property. An unknown name or a value that cannot be read throws a Failure with status 2.
void setProperty(ScreenType const& type, UIViewController& screen, std::string const& name,
                 std::string const& value);

} // namespace trelundo::paywall
