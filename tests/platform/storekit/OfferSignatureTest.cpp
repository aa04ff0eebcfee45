#include "trelundo/platform/storekit/sandbox/internal/OfferSignature.h"
#include "tests/platform/storekit/StoreTestSupport.h"

#include <gmock/gmock.h>
#include <memory>
#include <openssl/bio.h>
#include <openssl/evp.h>
#include <openssl/pem.h>

namespace trelundo {
namespace {

constexpr std::int64_t now = (978'307'200 + 1000) * 1000LL; // where the clock of the tests stands
constexpr std::int64_t day = 24 * 60 * 60 * 1000LL;
constexpr auto separator = "\u2063";

std::string pemOf(EVP_PKEY* key) {
    std::unique_ptr<BIO, decltype(&BIO_free)> const memory{BIO_new(BIO_s_mem()), BIO_free};
    PEM_write_bio_PUBKEY(memory.get(), key);
    char* text = nullptr;
    auto const length = BIO_get_mem_data(memory.get(), &text);
    return {text, static_cast<std::size_t>(length)};
}

/// A payment with an offer, and the server that signs it.
struct Offer {
    explicit Offer(char const* curve = "P-256")
        : signer(EVP_EC_gen(curve), EVP_PKEY_free) {
        key = {.identifier = "K1", .publicKey = pemOf(signer.get()), .bundleIdentifier = "app"};
    }

    SKPayment::Fields payment() const {
        auto fields = asked;
        fields.paymentDiscount = make<SKPaymentDiscount>(discount);
        return fields;
    }
    void sign() {
        std::string text = key.bundleIdentifier;
        std::string nonce = discount.nonce;
        std::ranges::transform(nonce, nonce.begin(), [](unsigned char c) { return std::tolower(c); });
        for (auto const& part :
             {discount.keyIdentifier, asked.productIdentifier, discount.identifier,
              asked.applicationUsername.value_or(""), nonce, std::to_string(discount.timestamp)})
            text += separator + part;
        std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> const digest{EVP_MD_CTX_new(),
                                                                             EVP_MD_CTX_free};
        unsigned char bytes[256];
        char base64[512];
        std::size_t length = sizeof bytes;
        EVP_DigestSignInit(digest.get(), nullptr, EVP_sha256(), nullptr, signer.get());
        EVP_DigestSign(digest.get(), bytes, &length, reinterpret_cast<unsigned char const*>(text.data()),
                       text.size());
        EVP_EncodeBlock(reinterpret_cast<unsigned char*>(base64), bytes, static_cast<int>(length));
        discount.signature = base64;
    }
    std::string verdict() const {
        auto const checked = checkOfferSignature(key, payment(), 1000);
        return checked ? "" : checked.error().message;
    }

    std::shared_ptr<EVP_PKEY> signer;
    OfferKey key;
    SKPayment::Fields asked{.productIdentifier = "month", .applicationUsername = "user"};
    SKPaymentDiscount::Fields discount{.identifier = "offer",
                                       .keyIdentifier = "K1",
                                       .nonce = "0a1b2c3d-0000-4000-8000-00000000000f",
                                       .timestamp = now - 1};
};

using Change = std::function<void(Offer&)>;

Change inText(std::string SKPaymentDiscount::Fields::*field, std::string text) {
    return [=](Offer& offer) { offer.discount.*field = text; };
}
Change at(std::int64_t timestamp) {
    return [=](Offer& offer) { offer.discount.timestamp = timestamp; };
}

/// What may be as it likes as long as it is signed.
TEST(OfferSignatureTest, AcceptsWhatWasSignedInTheLastDay) {
    for (auto const& change :
         {Change{[](Offer&) {}}, at(now), at(now - day),
          inText(&SKPaymentDiscount::Fields::nonce, "0A1B2C3D-FFFF-4000-8000-00000000000F"),
          Change{[](Offer& offer) { offer.asked.applicationUsername = std::nullopt; }},
          Change{[](Offer& offer) { offer.asked.productIdentifier = std::string("\0\n\xC3\xA9", 4); }}}) {
        Offer offer;
        change(offer);
        offer.sign();
        EXPECT_EQ(offer.verdict(), "");
    }
}

/// Wrong although the right key has signed it so.
TEST(OfferSignatureTest, RefusesWhatMustNotBeSigned) {
    using Fields = SKPaymentDiscount::Fields;
    using Timestamp = std::numeric_limits<std::int64_t>;
    std::vector<Change> changes{at(now + 1),
                                at(now - day - 1),
                                at(Timestamp::max()),
                                at(Timestamp::min()),
                                inText(&Fields::keyIdentifier, "k1"),
                                [](Offer& offer) { offer.key.bundleIdentifier += separator; },
                                [](Offer& offer) { offer.asked.productIdentifier += separator; },
                                [](Offer& offer) { *offer.asked.applicationUsername += separator; },
                                [](Offer& offer) { offer.discount.identifier += separator; },
                                [](Offer& offer) {
                                    offer.key.identifier += separator;
                                    offer.discount.keyIdentifier += separator;
                                }};
    for (std::string const nonce :
         {"", "0a1b2c3d00004000800000000000000f", "{0a1b2c3d-0000-4000-8000-00000000000f}",
          "0a1b2c3d-0000-4000-8000-00000000000g", "0a1b2c3d-0000-4000-8000-00000000000",
          "0a1b2c3d-0000-4000-8000-00000000000f ", "0a1b2c3d_0000_4000_8000_00000000000f",
          "0a1b2c3-d0000-4000-8000-00000000000f", "\u0660a1b2c3d-0000-4000-8000-0000000000f"})
        changes.push_back(inText(&Fields::nonce, nonce));
    for (std::size_t i = 0; i < changes.size(); ++i) {
        Offer offer;
        changes[i](offer);
        offer.sign();
        EXPECT_NE(offer.verdict(), "") << i;
    }
}

/// Every character of a signature and of what it covers counts, and so does the way in which it is written.
TEST(OfferSignatureTest, RefusesWhatWasChangedAfterwards) {
    Offer sound;
    sound.sign();
    std::vector<Offer> changed;
    auto const add = [&](Change const& change) { change(changed.emplace_back(sound)); };
    for (std::size_t i = 0; i < sound.discount.signature.size(); ++i) {
        for (char const other : {'A', '=', '-'})
            if (sound.discount.signature[i] != other)
                add([&](Offer& offer) { offer.discount.signature[i] = other; });
        add([&](Offer& offer) { offer.discount.signature.resize(i); });
    }
    for (std::string const tail : {" ", "\n", "=", "AAAA"})
        add([&](Offer& offer) { offer.discount.signature += tail; });
    add([](Offer& offer) { offer.discount.signature += '\0'; });
    add([](Offer& offer) { offer.discount.signature = std::string(4096, 'A'); });
    for (std::size_t i = 0; i < sound.discount.nonce.size(); ++i)
        if (sound.discount.nonce[i] == '0') add([&](Offer& offer) { offer.discount.nonce[i] = '1'; });
    for (std::int64_t const timestamp : {now, now - 2, now - day})
        add([&](Offer& offer) { offer.discount.timestamp = timestamp; });
    add([](Offer& offer) { offer.key.bundleIdentifier = "App"; });
    add([](Offer& offer) { offer.asked.productIdentifier = "year"; });
    add([](Offer& offer) { offer.asked.applicationUsername = std::nullopt; });
    add([](Offer& offer) { offer.discount.identifier = "other"; });
    add([](Offer& offer) { std::swap(offer.discount.identifier, offer.asked.productIdentifier); });
    add([](Offer& offer) { offer.key.publicKey = Offer{}.key.publicKey; });
    EXPECT_GE(changed.size(), 120U);
    for (std::size_t i = 0; i < changed.size(); ++i)
        EXPECT_NE(changed[i].verdict(), "") << i << " " << changed[i].discount.signature;
}

TEST(OfferSignatureTest, TakesPublicKeysOnOneCurveAndNeverAsks) {
    for (auto const* curve : {"P-384", "P-521", "secp256k1", "prime192v1", "brainpoolP256r1"}) {
        Offer offer{curve};
        offer.sign();
        EXPECT_THAT(offer.verdict(), testing::HasSubstr("P-256")) << curve;
    }
    Offer offer;
    offer.sign();
    std::string encryptedHeader = offer.key.publicKey;
    encryptedHeader.insert(
        encryptedHeader.find('\n') + 1,
        "Proc-Type: 4,ENCRYPTED\nDEK-Info: AES-128-CBC,00112233445566778899AABBCCDDEEFF\n\n");
    testing::internal::CaptureStderr();
    for (auto const& pem : {encryptedHeader, std::string(100'000, '-')}) {
        offer.key.publicKey = pem;
        EXPECT_THAT(offer.verdict(), testing::HasSubstr("no public key"));
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << "nobody is asked for a password";
}

class SignedPurchaseTest : public SandboxTest {
protected:
    SignedPurchaseTest() {
        offer.sign();
        openSigned();
    }
    void openSigned() {
        open({.file = folder / "store.db", .configuration = catalogue(), .offerKey = offer.key});
    }
    int buyOffer() { return failureOf(offer.payment()); }

    Offer offer;
};

TEST_F(SignedPurchaseTest, UsesANonceOnceInAnyCaseAndInAnyRun) {
    store->setNextOutcome({.kind = SandboxStore::Outcome::Kind::cancelled});
    EXPECT_EQ(buyOffer(), 2);
    EXPECT_EQ(buyOffer(), -1) << "what failed has used nothing";
    EXPECT_EQ(buyOffer(), 12);
    for (auto& character : offer.discount.nonce) character = static_cast<char>(std::toupper(character));
    EXPECT_EQ(buyOffer(), 12);
    openSigned();
    EXPECT_EQ(buyOffer(), 12);
    offer.discount.nonce.back() = '0';
    EXPECT_EQ(buyOffer(), 12) << "not signed";
    offer.sign();
    EXPECT_EQ(buyOffer(), -1);
}

TEST_F(SignedPurchaseTest, GoesByTheClockOfTheStore) {
    time.clock.setNow(24 * 60 * 60);
    EXPECT_EQ(buyOffer(), 12);
    EXPECT_EQ(warnings.lines, Lines{"offer \"offer\": the signature is older than 24 hours"});
}

TEST_F(SignedPurchaseTest, ALeftOverPurchaseHasNotUsedItsOwnNonce) {
    store->addPayment(offer.payment());
    openSigned();
    EXPECT_EQ(observer->lines.back(), "month:purchased");
}

} // namespace
} // namespace trelundo
