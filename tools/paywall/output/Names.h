#pragma once

#include "trelundo/kit/store/PremiumManager.h"
#include "trelundo/platform/graphics/text/TextStyle.h"
#include "trelundo/platform/storekit/SKPaymentTransaction.h"
#include "trelundo/platform/storekit/SKProduct.h"
#include "trelundo/platform/uikit/controllers/UIViewController.h"
#include "trelundo/platform/uikit/layout/UIStackView.h"
#include "trelundo/platform/uikit/views/UIVisualEffectView.h"

#include <string_view>

namespace trelundo::paywall {

// Enumerations by their case names, as logs, listings and descriptions spell them.
std::string_view nameOf(PremiumManagerState state);
std::string_view nameOf(SKPaymentTransactionState state);
std::string_view nameOf(SKProductPeriodUnit unit);
std::string_view nameOf(SKProductDiscountPaymentMode mode);
std::string_view nameOf(UIUserInterfaceStyle style);
std::string_view nameOf(UIUserInterfaceSizeClass sizeClass);
std::string_view nameOf(UIStatusBarStyle style);
std::string_view nameOf(UIBlurEffectStyle style);
std::string_view nameOf(UIViewContentMode mode);
std::string_view nameOf(UIStackViewDistribution distribution);
std::string_view nameOf(UIStackViewAlignment alignment);
std::string_view nameOf(NSTextAlignment alignment);

} // namespace trelundo::paywall
