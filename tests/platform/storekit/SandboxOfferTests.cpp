#include "SandboxStoreTest.h"

#include <openssl/bio.h>
#include <openssl/ec.h>
#include <openssl/evp.h>
#include <openssl/pem.h>

namespace trelundo {
namespace {

using Kind = SandboxStore::Outcome::Kind;

TEST_F(SandboxStoreTest, ChecksOffers) {
    open();
    auto const pay = [&](SKPaymentDiscount::Fields fields, std::string product = "month") {
        return failureOf({.productIdentifier = product, .paymentDiscount = make<SKPaymentDiscount>(fields)});
    };
    SKPaymentDiscount::Fields const sound{
        .identifier = "offer", .keyIdentifier = "K", .nonce = "n", .signature = "s"};
    EXPECT_EQ(pay(sound), -1);
    EXPECT_EQ(pay(sound, "badge"), 11) << "an offer of another product";
    auto broken = sound;
    broken.identifier = "other";
    EXPECT_EQ(pay(broken), 11);
    for (auto field : {&SKPaymentDiscount::Fields::identifier, &SKPaymentDiscount::Fields::keyIdentifier,
                       &SKPaymentDiscount::Fields::nonce, &SKPaymentDiscount::Fields::signature}) {
        broken = sound;
        broken.*field = "";
        EXPECT_EQ(pay(broken), 13);
    }
}

TEST_F(SandboxStoreTest, FailsAsToldEvenForAnUnknownOffer) {
    open();
    SKPayment::Fields const payment{
        .productIdentifier = "month",
        .paymentDiscount = make<SKPaymentDiscount>(SKPaymentDiscount::Fields{.identifier = "other"})};
    for (auto const& [outcome, code] : {std::pair{SandboxStore::Outcome{Kind::cancelled, 0}, 2},
                                        {SandboxStore::Outcome{Kind::failed, 7}, 7},
                                        {SandboxStore::Outcome{Kind::failedWithoutError, 0}, -1},
                                        {SandboxStore::Outcome{Kind::purchased, 0}, 11}}) {
        store->setNextOutcome(outcome);
        EXPECT_EQ(failureOf(payment), code);
    }
}

/// A fresh key pair that signs as a server would.
class Signer {
public:
    Signer()
        : key_(EVP_EC_gen("P-256")) {}
    ~Signer() { EVP_PKEY_free(key_); }
    Signer(Signer const&) = delete;
    Signer& operator=(Signer const&) = delete;

    std::string publicKey() const {
        BIO* const buffer = BIO_new(BIO_s_mem());
        PEM_write_bio_PUBKEY(buffer, key_);
        char* text = nullptr;
        auto const length = BIO_get_mem_data(buffer, &text);
        std::string const pem(text, static_cast<std::size_t>(length));
        BIO_free(buffer);
        return pem;
    }
    std::string sign(std::string const& payload) const {
        auto const* const bytes = reinterpret_cast<unsigned char const*>(payload.data());
        EVP_MD_CTX* const digest = EVP_MD_CTX_new();
        std::size_t length = 0;
        EVP_DigestSignInit(digest, nullptr, EVP_sha256(), nullptr, key_);
        EVP_DigestSign(digest, nullptr, &length, bytes, payload.size());
        std::vector<unsigned char> signature(length);
        EVP_DigestSign(digest, signature.data(), &length, bytes, payload.size());
        EVP_MD_CTX_free(digest);
        std::vector<unsigned char> text(length / 3 * 4 + 8);
        auto const count = EVP_EncodeBlock(text.data(), signature.data(), static_cast<int>(length));
        return {text.begin(), text.begin() + count};
    }

private:
    EVP_PKEY* key_;
};

TEST_F(SandboxStoreTest, ChecksSignaturesWhenItHasAKey) {
    Signer const signer;
    OfferKey const key{.identifier = "K1", .publicKey = signer.publicKey(), .bundleIdentifier = "app"};
    open({.configuration = catalogue(), .seed = 0, .offerKey = key});
    SKPaymentDiscount::Fields discount{
        .identifier = "offer", .keyIdentifier = "K1", .nonce = "n", .timestamp = 42};
    SKPayment::Fields payment{.productIdentifier = "month", .applicationUsername = "user"};
    payment.paymentDiscount = make<SKPaymentDiscount>(discount);
    discount.signature = signer.sign("app\u2063K1\u2063month\u2063offer\u2063user\u2063n\u206342");
    auto const pay = [&](SKPaymentDiscount::Fields const& fields) {
        payment.paymentDiscount = make<SKPaymentDiscount>(fields);
        return failureOf(payment);
    };
    EXPECT_EQ(pay(discount), -1);
    auto capital = discount;
    capital.nonce = "N";
    EXPECT_EQ(pay(capital), -1) << "a nonce is signed in lower case";
    auto later = discount;
    later.timestamp = 43;
    EXPECT_EQ(pay(later), 12);
    auto garbage = discount;
    for (auto const* text : {"????", "AAAA", "x", "="}) {
        garbage.signature = text;
        EXPECT_EQ(pay(garbage), 12);
    }
    auto otherKey = discount;
    otherKey.keyIdentifier = "K2";
    EXPECT_EQ(pay(otherKey), 12);
    payment.applicationUsername = "someone else";
    EXPECT_EQ(pay(discount), 12);
    EXPECT_FALSE(isOfferSignatureValid({.identifier = "K1", .publicKey = "no key", .bundleIdentifier = "app"},
                                       payment));
}

} // namespace
} // namespace trelundo
