#include "trelundo/kit/plans/internal/SubscriptionPeriods.h"

#include <algorithm>

namespace trelundo {

Ref<SKProduct> firstWithPeriod(Products const& products, SubscriptionPeriods periods) {
    auto const found = std::ranges::find_if(products, [&](Ref<SKProduct> const& product) {
        auto const& period = product->subscriptionPeriod();
        return period && std::ranges::count(periods, *period) > 0;
    });
    return found == products.end() ? nullptr : *found;
}

} // namespace trelundo
