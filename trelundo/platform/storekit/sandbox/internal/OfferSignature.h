#pragma once

#include "trelundo/platform/foundation/Result.h"
#include "trelundo/platform/storekit/SKPayment.h"
#include "trelundo/platform/storekit/sandbox/OfferKey.h"

namespace trelundo {

/// Checks the signature (ECDSA with SHA-256, base64 of DER) of a payment's discount, which must be there. By
/// the platform's published rule a server signs bundle, key, product, offer, account token (empty when
/// absent), nonce and timestamp, with U+2063 between them. The error tells what does not fit.
Result<void> checkOfferSignature(OfferKey const& key, SKPayment::Fields const& payment);

} // namespace trelundo
