#pragma once

#include "trelundo/platform/foundation/NSError.h"
#include "trelundo/platform/foundation/Ref.h"

namespace trelundo {

inline constexpr char const* SKErrorDomain = "SKErrorDomain";

enum class SKErrorCode : int {
    unknown = 0,
    clientInvalid = 1,
    paymentCancelled = 2,
    paymentInvalid = 3,
    paymentNotAllowed = 4,
    storeProductNotAvailable = 5,
    cloudServicePermissionDenied = 6,
    cloudServiceNetworkConnectionFailed = 7,
    cloudServiceRevoked = 8,
    privacyAcknowledgementRequired = 9,
    unauthorizedRequestData = 10,
    invalidOfferIdentifier = 11,
    invalidSignature = 12,
    missingOfferParams = 13,
    invalidOfferPrice = 14,
    overlayCancelled = 15,
    overlayInvalidConfiguration = 16,
    overlayTimeout = 17,
    ineligibleForOffer = 18,
    unsupportedPlatform = 19,
    overlayPresentedInBackgroundScene = 20,
    paymentMethodBindingConfigurationRequired = 21,
};

/// An error of the store's domain with the code's own description.
Ref<NSError> makeStoreError(int code);
inline Ref<NSError> makeStoreError(SKErrorCode code) { return makeStoreError(static_cast<int>(code)); }

} // namespace trelundo
