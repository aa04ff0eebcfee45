#include "trelundo/kit/plans/internal/TextTemplates.h"

#include "trelundo/kit/common/Texts.h"
#include "trelundo/kit/plans/PlanName.h"
#include "trelundo/platform/foundation/Strings.h"

namespace trelundo {

std::string isolatedPrice(std::string_view price) {
    constexpr auto firstStrongIsolate = "\u2068";
    constexpr auto popIsolate = "\u2069";
    if (!Texts::isRightToLeft()) return std::string{price};
    return firstStrongIsolate + std::string{price} + popIsolate;
}

std::string filledWithPrice(std::string_view key, std::string_view price) {
    return replacingOccurrences(Texts::text(key), "$$$", isolatedPrice(price));
}

std::string filledWithPeriod(std::string_view key, std::string_view period) {
    return replacingOccurrences(Texts::text(key), "%%%", period);
}

std::string filledWithTrial(std::string_view key, SKProductDiscount const& trial,
                            bool capitalizeFirstLetter) {
    return filledWithPeriod(key, planName({.productSubscriptionPeriod = trial.subscriptionPeriod(),
                                           .capitalizeFirstLetter = capitalizeFirstLetter,
                                           .periodUnitDown = true}));
}

} // namespace trelundo
