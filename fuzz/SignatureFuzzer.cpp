#include "fuzz/Pieces.h"
#include "trelundo/platform/storekit/sandbox/internal/OfferSignature.h"

#include <cstdlib>

using namespace trelundo;

/// The key and every field of a payment, one a line. Nothing here was signed, so nothing may be accepted.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    auto const text = fuzz::textOf(data, size);
    auto const isKeyGiven = text.starts_with("-----");
    auto const keyEnd = isKeyGiven ? text.find("\n\n") : std::string_view::npos;
    auto const lines = fuzz::pieces(keyEnd == std::string_view::npos ? text : text.substr(keyEnd + 2), 8);
    OfferKey const key{.identifier = lines[0],
                       .publicKey = std::string(text.substr(0, keyEnd)),
                       .bundleIdentifier = lines[1]};
    SKPayment::Fields const payment{.productIdentifier = lines[2],
                                    .applicationUsername = lines[3],
                                    .paymentDiscount = make<SKPaymentDiscount>(SKPaymentDiscount::Fields{
                                        .identifier = lines[4],
                                        .keyIdentifier = lines[0],
                                        .nonce = lines[5],
                                        .signature = lines[6],
                                        .timestamp = std::strtoll(lines[7].c_str(), nullptr, 10)})};
    if (checkOfferSignature(key, payment)) std::abort();
    return 0;
}
