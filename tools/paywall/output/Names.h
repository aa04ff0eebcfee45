#pragma once

#include "trelundo/kit/store/PremiumManager.h"
#include "trelundo/platform/storekit/SKPaymentTransaction.h"
#include "trelundo/platform/storekit/SKProduct.h"
#include "trelundo/platform/uikit/views/UITraitCollection.h"

#include <string_view>

namespace trelundo::paywall {

// Enumerations by their case names, as logs and listings spell them.
std::string_view nameOf(PremiumManagerState state);
std::string_view nameOf(SKPaymentTransactionState state);
std::string_view nameOf(SKProductPeriodUnit unit);
std::string_view nameOf(SKProductDiscountPaymentMode mode);
std::string_view nameOf(UIUserInterfaceStyle style);

} // namespace trelundo::paywall
