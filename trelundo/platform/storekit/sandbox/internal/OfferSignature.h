#pragma once

#include "trelundo/platform/foundation/Result.h"
#include "trelundo/platform/storekit/SKPayment.h"
#include "trelundo/platform/storekit/sandbox/OfferKey.h"

namespace trelundo {

/// Checks the signature (ECDSA on the curve P-256 with SHA-256, base64 of DER) of a payment's discount, which
/// must be there. By the platform's published rule a server signs bundle, key, product, offer, account token
/// (empty when absent), nonce and timestamp, with U+2063 between them, and a signature holds for 24 hours.
/// `date` is now, in seconds since 2001-01-01 00:00 UTC. The error tells what does not fit. Whether the nonce
/// has been used before is for the caller to know.
Result<void> checkOfferSignature(OfferKey const& key, SKPayment::Fields const& payment, double date);

} // namespace trelundo
