#include "platform/foundation/RawValues.h"

#include "platform/storekit/SKError.h"
#include "platform/storekit/SKPaymentTransaction.h"
#include "platform/storekit/SKProduct.h"

// Hosts keep raw values in files and settings, so they may never change.
namespace trelundo {

using State = SKPaymentTransactionState;
static_assert(haveRawValues({State::purchasing, State::purchased, State::failed, State::restored,
                             State::deferred},
                            {0, 1, 2, 3, 4}));

using Unit = SKProductPeriodUnit;
static_assert(haveRawValues({Unit::day, Unit::week, Unit::month, Unit::year}, {0, 1, 2, 3}));

using Mode = SKProductDiscountPaymentMode;
static_assert(haveRawValues({Mode::payAsYouGo, Mode::payUpFront, Mode::freeTrial}, {0, 1, 2}));

using Type = SKProductDiscountType;
static_assert(haveRawValues({Type::introductory, Type::subscription}, {0, 1}));

using Code = SKErrorCode;
static_assert(haveRawValues({Code::unknown,
                             Code::clientInvalid,
                             Code::paymentCancelled,
                             Code::paymentInvalid,
                             Code::paymentNotAllowed,
                             Code::storeProductNotAvailable,
                             Code::cloudServicePermissionDenied,
                             Code::cloudServiceNetworkConnectionFailed,
                             Code::cloudServiceRevoked,
                             Code::privacyAcknowledgementRequired,
                             Code::unauthorizedRequestData,
                             Code::invalidOfferIdentifier,
                             Code::invalidSignature,
                             Code::missingOfferParams,
                             Code::invalidOfferPrice,
                             Code::overlayCancelled,
                             Code::overlayInvalidConfiguration,
                             Code::overlayTimeout,
                             Code::ineligibleForOffer,
                             Code::unsupportedPlatform,
                             Code::overlayPresentedInBackgroundScene},
                            {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20}));

} // namespace trelundo
