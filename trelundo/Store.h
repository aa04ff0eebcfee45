#pragma once

// The store alone: products, purchases, restores, price and period texts, and the embedded sandbox store.
// Needs no view toolkit and no display.
// IWYU pragma: begin_exports
#include "trelundo/kit/common/Texts.h"
#include "trelundo/kit/store/Entitlements.h"
#include "trelundo/kit/store/EventParameters.h"
#include "trelundo/kit/store/PremiumManager.h"
#include "trelundo/kit/store/PremiumManagerDelegate.h"
#include "trelundo/kit/store/Products.h"
#include "trelundo/platform/foundation/Bundle.h"
#include "trelundo/platform/foundation/Clock.h"
#include "trelundo/platform/foundation/DispatchQueue.h"
#include "trelundo/platform/foundation/Log.h"
#include "trelundo/platform/foundation/NotificationCenter.h"
#include "trelundo/platform/foundation/RunLoop.h"
#include "trelundo/platform/storekit/OwnedProductsFile.h"
#include "trelundo/platform/storekit/SKError.h"
#include "trelundo/platform/storekit/SKPaymentQueue.h"
#include "trelundo/platform/storekit/SKProductsRequest.h"
#include "trelundo/platform/storekit/StoreBackend.h"
#include "trelundo/platform/storekit/sandbox/SandboxStore.h"
// IWYU pragma: end_exports
