#pragma once

#include <string>

namespace trelundo {

/// The public half of the key that signs promotional offers, and the application that they are signed for.
struct OfferKey {
    std::string identifier = {};       // must match the discount's key identifier
    std::string publicKey = {};        // PEM, elliptic curve P-256
    std::string bundleIdentifier = {}; // of the application
};

} // namespace trelundo
