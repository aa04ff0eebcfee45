#include "tools/paywall/output/Names.h"

#include <array>

namespace trelundo::paywall {

namespace {

template <class Enumeration, std::size_t count>
std::string_view find(Enumeration value, std::array<std::string_view, count> const& names) {
    auto const index = static_cast<std::size_t>(value);
    return index < count ? names[index] : "unknown";
}

} // namespace

std::string_view nameOf(PremiumManagerState state) {
    return find(state, std::array<std::string_view, 4>{"notStarted", "loading", "loaded", "failed"});
}

std::string_view nameOf(SKPaymentTransactionState state) {
    return find(state,
                std::array<std::string_view, 5>{"purchasing", "purchased", "failed", "restored", "deferred"});
}

std::string_view nameOf(SKProductPeriodUnit unit) {
    return find(unit, std::array<std::string_view, 4>{"day", "week", "month", "year"});
}

std::string_view nameOf(SKProductDiscountPaymentMode mode) {
    return find(mode, std::array<std::string_view, 3>{"payAsYouGo", "payUpFront", "freeTrial"});
}

std::string_view nameOf(UIUserInterfaceStyle style) {
    return find(style, std::array<std::string_view, 3>{"unspecified", "light", "dark"});
}

std::string_view nameOf(UIUserInterfaceSizeClass sizeClass) {
    return find(sizeClass, std::array<std::string_view, 3>{"unspecified", "compact", "regular"});
}

std::string_view nameOf(UIStatusBarStyle style) {
    return find(style, std::array<std::string_view, 4>{"default", "lightContent", "", "darkContent"});
}

std::string_view nameOf(UIBlurEffectStyle style) {
    return find(style,
                std::array<std::string_view, 6>{"extraLight", "light", "dark", "", "regular", "prominent"});
}

std::string_view nameOf(UIViewContentMode mode) {
    return find(mode, std::array<std::string_view, 13>{"scaleToFill", "scaleAspectFit", "scaleAspectFill",
                                                       "redraw", "center", "top", "bottom", "left", "right",
                                                       "topLeft", "topRight", "bottomLeft", "bottomRight"});
}

std::string_view nameOf(UIStackViewDistribution distribution) {
    return find(distribution, std::array<std::string_view, 5>{"fill", "fillEqually", "fillProportionally",
                                                              "equalSpacing", "equalCentering"});
}

std::string_view nameOf(UIStackViewAlignment alignment) {
    return find(alignment, std::array<std::string_view, 6>{"fill", "leading", "firstBaseline", "center",
                                                           "trailing", "lastBaseline"});
}

std::string_view nameOf(NSTextAlignment alignment) {
    return find(alignment,
                std::array<std::string_view, 5>{"left", "center", "right", "justified", "natural"});
}

} // namespace trelundo::paywall
