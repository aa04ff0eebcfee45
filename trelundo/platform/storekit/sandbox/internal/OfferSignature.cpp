#include "trelundo/platform/storekit/sandbox/internal/OfferSignature.h"

#include <algorithm>
#include <array>
#include <memory>
#include <openssl/bio.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <optional>
#include <string_view>
#include <vector>

namespace trelundo {

namespace {

constexpr std::size_t longestSignature = 1024; // characters of base64
constexpr std::size_t longestKey = 65536;      // characters of PEM
constexpr auto curve = "prime256v1";           // P-256
constexpr std::string_view separator = "\u2063";
constexpr double lifetime = 24 * 60 * 60 * 1000.0; // milliseconds
constexpr double secondsUntil2001 = 978'307'200;   // since 1970-01-01 00:00 UTC

using Bytes = std::vector<unsigned char>;
template <auto release> struct Releaser {
    template <class T> void operator()(T* object) const { release(object); }
};
using Key = std::unique_ptr<EVP_PKEY, Releaser<EVP_PKEY_free>>;
using Digest = std::unique_ptr<EVP_MD_CTX, Releaser<EVP_MD_CTX_free>>;
using Buffer = std::unique_ptr<BIO, Releaser<BIO_free>>;

std::string encodeBase64(Bytes const& bytes) {
    std::string text((bytes.size() + 2) / 3 * 4 + 1, '\0'); // the encoder ends it with a zero
    text.resize(static_cast<std::size_t>(EVP_EncodeBlock(reinterpret_cast<unsigned char*>(text.data()),
                                                         bytes.data(), static_cast<int>(bytes.size()))));
    return text;
}

/// None unless `text` is written in the one way in which the bytes are written.
std::optional<Bytes> decodeBase64(std::string const& text) {
    if (text.empty() || text.size() % 4 != 0 || text.size() > longestSignature) return std::nullopt;
    Bytes bytes(text.size() / 4 * 3);
    auto const* const source = reinterpret_cast<unsigned char const*>(text.data());
    auto const length = EVP_DecodeBlock(bytes.data(), source, static_cast<int>(text.size()));
    if (length < 0) return std::nullopt;
    // The decoder counts the padding as bytes.
    auto const padding = text.ends_with("==") ? 2U : text.ends_with('=') ? 1U : 0U;
    bytes.resize(static_cast<std::size_t>(length) - padding);
    return encodeBase64(bytes) == text ? std::optional{bytes} : std::nullopt;
}

int givePassword(char* /*password*/, int /*size*/, int /*isWriting*/, void* /*context*/) {
    return -1; // there is none, and nobody is asked
}

bool isOnCurve(EVP_PKEY* key) {
    std::array<char, 64> name{};
    return EVP_PKEY_get_group_name(key, name.data(), name.size(), nullptr) == 1 &&
           std::string_view{name.data()} == curve;
}

/// Null for anything but a public key on the curve, in clear.
Key readKey(std::string const& pem) {
    if (pem.size() > longestKey) return nullptr;
    Buffer const buffer{BIO_new_mem_buf(pem.data(), static_cast<int>(pem.size()))};
    Key key{buffer ? PEM_read_bio_PUBKEY(buffer.get(), nullptr, givePassword, nullptr) : nullptr};
    return key && isOnCurve(key.get()) ? std::move(key) : nullptr;
}

/// Whether a text has the form 8-4-4-4-12 of hexadecimal digits.
bool isUuid(std::string_view text) {
    constexpr std::string_view form = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
    auto const fits = [](char given, char wanted) {
        bool const isDigit = (given >= '0' && given <= '9') || (given >= 'a' && given <= 'f') ||
                             (given >= 'A' && given <= 'F');
        return wanted == 'x' ? isDigit : given == wanted;
    };
    return text.size() == form.size() && std::ranges::equal(text, form, fits);
}

std::string lowerCase(std::string text) {
    std::ranges::transform(text, text.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return text;
}

std::array<std::string, 7> signedParts(OfferKey const& key, SKPayment::Fields const& payment) {
    auto const& discount = *payment.paymentDiscount;
    return {key.bundleIdentifier,
            discount.keyIdentifier(),
            payment.productIdentifier,
            discount.identifier(),
            payment.applicationUsername.value_or(std::string{}),
            lowerCase(discount.nonce()), // however it is written
            std::to_string(discount.timestamp())};
}

std::string joined(std::array<std::string, 7> const& parts) {
    auto text = parts.front();
    for (std::size_t i = 1; i < parts.size(); ++i) text.append(separator).append(parts[i]);
    return text;
}

bool isSignedBy(EVP_PKEY* key, Bytes const& signature, std::string const& text) {
    Digest const digest{EVP_MD_CTX_new()};
    return digest && EVP_DigestVerifyInit(digest.get(), nullptr, EVP_sha256(), nullptr, key) == 1 &&
           EVP_DigestVerify(digest.get(), signature.data(), signature.size(),
                            reinterpret_cast<unsigned char const*>(text.data()), text.size()) == 1;
}

/// What is wrong with a discount before its signature is looked at; none: nothing.
std::optional<std::string> objection(OfferKey const& key, SKPayment::Fields const& payment, double date) {
    auto const& discount = *payment.paymentDiscount;
    auto const age = (secondsUntil2001 + date) * 1000 - static_cast<double>(discount.timestamp());
    if (discount.keyIdentifier() != key.identifier)
        return "signed with the key \"" + discount.keyIdentifier() + "\", not \"" + key.identifier + "\"";
    if (!isUuid(discount.nonce())) return "the nonce is not a UUID";
    if (age < 0) return "the signature is from the future";
    if (age > lifetime) return "the signature is older than 24 hours";
    auto const holdsSeparator = [](std::string const& part) {
        return part.find(separator) != std::string::npos;
    };
    if (std::ranges::any_of(signedParts(key, payment), holdsSeparator))
        return "a signed text holds the character U+2063 that separates them";
    return std::nullopt;
}

std::optional<std::string> signatureObjection(OfferKey const& key, SKPayment::Fields const& payment) {
    auto const publicKey = readKey(key.publicKey);
    if (!publicKey) return "the key \"" + key.identifier + "\" is no public key on the curve P-256";
    auto const signature = decodeBase64(payment.paymentDiscount->signature());
    if (!signature) return "the signature is not base64";
    if (!isSignedBy(publicKey.get(), *signature, joined(signedParts(key, payment))))
        return "the signature does not fit the payment";
    return std::nullopt;
}

} // namespace

Result<void> checkOfferSignature(OfferKey const& key, SKPayment::Fields const& payment, double date) {
    auto reason = objection(key, payment, date);
    if (!reason) reason = signatureObjection(key, payment);
    ERR_clear_error();
    if (!reason) return {};
    return Error{"offer \"" + payment.paymentDiscount->identifier() + "\": " + *reason};
}

} // namespace trelundo
