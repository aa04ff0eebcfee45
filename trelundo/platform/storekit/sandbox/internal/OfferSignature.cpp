#include "trelundo/platform/storekit/sandbox/internal/OfferSignature.h"

#include <algorithm>
#include <memory>
#include <openssl/bio.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <optional>
#include <vector>

namespace trelundo {

namespace {

constexpr std::size_t longestSignature = 1024; // characters of base64

using Bytes = std::vector<unsigned char>;
template <auto release> struct Releaser {
    template <class T> void operator()(T* object) const { release(object); }
};
using Key = std::unique_ptr<EVP_PKEY, Releaser<EVP_PKEY_free>>;
using Digest = std::unique_ptr<EVP_MD_CTX, Releaser<EVP_MD_CTX_free>>;
using Buffer = std::unique_ptr<BIO, Releaser<BIO_free>>;

std::optional<Bytes> decodeBase64(std::string const& text) {
    if (text.empty() || text.size() % 4 != 0 || text.size() > longestSignature) return std::nullopt;
    Bytes bytes(text.size() / 4 * 3);
    auto const* const source = reinterpret_cast<unsigned char const*>(text.data());
    auto const length = EVP_DecodeBlock(bytes.data(), source, static_cast<int>(text.size()));
    if (length < 0) return std::nullopt;
    // The decoder counts the padding as bytes.
    auto const padding = text.ends_with("==") ? 2U : text.ends_with('=') ? 1U : 0U;
    bytes.resize(static_cast<std::size_t>(length) - padding);
    return bytes;
}

Key readKey(std::string const& pem) {
    Buffer const buffer{BIO_new_mem_buf(pem.data(), static_cast<int>(pem.size()))};
    return Key{buffer ? PEM_read_bio_PUBKEY(buffer.get(), nullptr, nullptr, nullptr) : nullptr};
}

std::string lowerCase(std::string text) {
    std::ranges::transform(text, text.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return text;
}

std::string signedText(OfferKey const& key, SKPayment::Fields const& payment) {
    static constexpr char const* separator = "\u2063";
    auto const& discount = *payment.paymentDiscount;
    std::string text = key.bundleIdentifier;
    // However it is written, a nonce is signed in lower case.
    for (auto const& part : {discount.keyIdentifier(), payment.productIdentifier, discount.identifier(),
                             payment.applicationUsername.value_or(std::string{}), lowerCase(discount.nonce()),
                             std::to_string(discount.timestamp())})
        text.append(separator).append(part);
    return text;
}

bool isSignedBy(EVP_PKEY* key, Bytes const& signature, std::string const& text) {
    Digest const digest{EVP_MD_CTX_new()};
    return digest && EVP_DigestVerifyInit(digest.get(), nullptr, EVP_sha256(), nullptr, key) == 1 &&
           EVP_DigestVerify(digest.get(), signature.data(), signature.size(),
                            reinterpret_cast<unsigned char const*>(text.data()), text.size()) == 1;
}

} // namespace

Result<void> checkOfferSignature(OfferKey const& key, SKPayment::Fields const& payment) {
    auto const& discount = *payment.paymentDiscount;
    auto const offer = "offer \"" + discount.identifier() + "\": ";
    if (discount.keyIdentifier() != key.identifier)
        return Error{offer + "signed with the key \"" + discount.keyIdentifier() + "\", not \"" +
                     key.identifier + "\""};
    auto const publicKey = readKey(key.publicKey);
    auto const signature = decodeBase64(discount.signature());
    bool const isValid =
        publicKey && signature && isSignedBy(publicKey.get(), *signature, signedText(key, payment));
    ERR_clear_error();
    if (!publicKey) return Error{offer + "the key \"" + key.identifier + "\" cannot be read"};
    if (!signature) return Error{offer + "the signature is not base64"};
    if (!isValid) return Error{offer + "the signature does not fit the payment"};
    return {};
}

} // namespace trelundo
