#pragma once

#include "trelundo/platform/storekit/SKPayment.h"
#include "trelundo/platform/storekit/sandbox/OfferKey.h"

#include <string>

namespace trelundo {

/// The text that a server signs for a payment with a discount, by the platform's published rule: bundle, key,
/// product, offer, account token (empty when absent), nonce and timestamp, with U+2063 between them.
std::string offerSignaturePayload(OfferKey const& key, SKPayment::Fields const& payment);

/// Whether the discount of `payment` carries a signature (ECDSA with SHA-256, base64 of DER) that `key`
/// proves. False also for a payment without discount, another key's identifier, or a key that cannot be read.
bool isOfferSignatureValid(OfferKey const& key, SKPayment::Fields const& payment);

} // namespace trelundo
