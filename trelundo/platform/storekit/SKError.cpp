#include "trelundo/platform/storekit/SKError.h"

#include <array>
#include <cstddef>

namespace trelundo {

namespace {

// By code. Unknown failures and cancelling read alike, as on the platform: tell cancelling by its code.
constexpr std::array descriptions{
    "Cannot connect to the store",
    "The client is not allowed to make this request",
    "Cannot connect to the store",
    "The purchase identifier or a payment parameter is invalid",
    "Payments are not allowed on this device",
    "The product is not available in this store",
    "Access to the cloud service is not permitted",
    "The device could not connect to the network",
    "Access to the cloud service was revoked",
    "The store's privacy policy is not yet accepted",
    "The request data is not authorised",
    "The offer identifier is invalid",
    "The signature of the offer is invalid",
    "Parameters of the offer are missing",
    "The price of the offer is invalid",
    "The overlay was cancelled",
    "The configuration of the overlay is invalid",
    "The overlay did not appear in time",
    "The user is not eligible for the offer",
    "The platform is not supported",
    "The overlay belongs to a scene in the background",
    "The binding of the payment method needs a configuration",
};

} // namespace

Ref<NSError> makeStoreError(int code) {
    NSError::UserInfo userInfo;
    if (code >= 0 && static_cast<std::size_t>(code) < descriptions.size())
        userInfo[NSError::localizedDescriptionKey] = descriptions[static_cast<std::size_t>(code)];
    return make<NSError>(SKErrorDomain, code, std::move(userInfo));
}

} // namespace trelundo
