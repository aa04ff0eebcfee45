#include "fuzz/Fuzzer.h"
#include "trelundo/platform/storekit/sandbox/internal/OfferSignature.h"

using namespace trelundo;

/// The key and every field of a payment, one a line. Nothing here was signed, so nothing may be accepted.
void fuzz::run(std::string_view input) {
    auto const keyEnd = input.starts_with("-----") ? input.find("\n\n") : std::string_view::npos;
    auto const lines = pieces(keyEnd == std::string_view::npos ? input : input.substr(keyEnd + 2), 8);
    OfferKey const key{.identifier = lines[0],
                       .publicKey = std::string(input.substr(0, keyEnd)),
                       .bundleIdentifier = lines[1]};
    SKPayment::Fields const payment{.productIdentifier = lines[2],
                                    .applicationUsername = lines[3],
                                    .paymentDiscount = make<SKPaymentDiscount>(SKPaymentDiscount::Fields{
                                        .identifier = lines[4],
                                        .keyIdentifier = lines[0],
                                        .nonce = lines[5],
                                        .signature = lines[6],
                                        .timestamp = std::strtoll(lines[7].c_str(), nullptr, 10)})};
    require(!checkOfferSignature(key, payment, 1.7e9));
}
