#pragma once

// The whole kit: the store and the eleven screens with their controls.
// IWYU pragma: begin_exports
#include "trelundo/Store.h"
#include "trelundo/kit/screens/base/PaywallObserver.h"
#include "trelundo/kit/screens/notice/BillingViewController.h"
#include "trelundo/kit/screens/offer/OfferV2ViewController.h"
#include "trelundo/kit/screens/offer/OfferV3ViewController.h"
#include "trelundo/kit/screens/offer/OfferV4ViewController.h"
#include "trelundo/kit/screens/offer/OfferViewController.h"
#include "trelundo/kit/screens/subscription/PremiumV2ViewController.h"
#include "trelundo/kit/screens/subscription/PremiumV3ViewController.h"
#include "trelundo/kit/screens/subscription/PremiumV4ViewController.h"
#include "trelundo/kit/screens/subscription/PremiumV5ViewController.h"
#include "trelundo/kit/screens/subscription/PremiumV6ViewController.h"
#include "trelundo/kit/screens/subscription/PremiumViewController.h"
#include "trelundo/platform/graphics/text/SystemFont.h"
#include "trelundo/platform/uikit/controllers/UIAlertController.h"
#include "trelundo/platform/uikit/controllers/UIApplication.h"
#include "trelundo/platform/uikit/layout/NSLayoutAnchor.h"
#include "trelundo/platform/uikit/layout/UIStackView.h"
#include "trelundo/platform/uikit/text/UILabel.h"
#include "trelundo/platform/uikit/views/UIImageView.h"
#include "trelundo/platform/uikit/views/UIScreen.h"
#include "trelundo/platform/uikit/views/UIWindow.h"
// IWYU pragma: end_exports
