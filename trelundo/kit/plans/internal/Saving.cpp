#include "trelundo/kit/plans/internal/Saving.h"

#include "trelundo/kit/common/Texts.h"
#include "trelundo/platform/foundation/FatalError.h"
#include "trelundo/platform/foundation/Strings.h"

#include <cmath>

namespace trelundo {

std::int64_t savingPercentage(Decimal const& yearlyPrice, Decimal const& price, int count) {
    Decimal const saving = Decimal{1} - yearlyPrice / (price * Decimal{count});
    return trappingProduct(trappingInteger(std::round(saving.doubleValue() * 10)), 10);
}

Ref<SKProduct> comparedWithYear(Products const& products, SubscriptionPeriods weeks) {
    auto const monthly = firstWithPeriod(products, {oneMonth});
    return monthly ? monthly : firstWithPeriod(products, weeks);
}

std::optional<std::int64_t> yearlySaving(SKProduct const& yearly, Products const& products,
                                         SubscriptionPeriods weeks) {
    auto const other = comparedWithYear(products, weeks);
    if (!other) return std::nullopt;
    return savingPercentage(yearly.price(), other->price(),
                            other->subscriptionPeriod() == oneMonth ? 12 : 52);
}

std::string savingText(std::int64_t percentage) {
    // Only two of the three signs are replaced: the third stays as the percent sign.
    return replacingOccurrences(Texts::text("Save %%% per year"), "%%", std::to_string(percentage));
}

} // namespace trelundo
