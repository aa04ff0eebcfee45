#include "SandboxStoreTest.h"

#include "trelundo/platform/storekit/sandbox/internal/OfferSignature.h"

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

// A pair of keys on the curve P-256, made for this test; the private one has signed the fields of the test's
// offer, joined by U+2063, and is gone.
constexpr char const* publicKey = "-----BEGIN PUBLIC KEY-----\n"
                                  "MFkwEwYHKoZIzj0CAQYIKoZIzj0DAQcDQgAElEGH/8qKSSog0DZoPlpSMU+AGBQu\n"
                                  "SXhG96wH7mwJLD1M/O91rYpm+mqK6X5s5p64Dd5APMRUz0DfDVcz9BMmkw==\n"
                                  "-----END PUBLIC KEY-----\n";
constexpr char const* signature =
    "MEUCIQCSgW8706UAcf6KrLo0FnUf/WshC13LRQS6G/J9X2TewQIgIXmLSJsyqjLjc/T49JtZ/QwslqzHfkmuWy4/78l8bsg=";

TEST_F(SandboxStoreTest, ChecksSignaturesWhenItHasAKey) {
    OfferKey const key{.identifier = "K1", .publicKey = publicKey, .bundleIdentifier = "app"};
    open({.configuration = catalogue(), .seed = 0, .offerKey = key});
    SKPaymentDiscount::Fields discount{
        .identifier = "offer", .keyIdentifier = "K1", .nonce = "n", .signature = signature, .timestamp = 42};
    SKPayment::Fields payment{.productIdentifier = "month", .applicationUsername = "user"};
    auto const pay = [&](SKPaymentDiscount::Fields const& fields) {
        payment.paymentDiscount = make<SKPaymentDiscount>(fields);
        return failureOf(payment);
    };
    EXPECT_EQ(pay(discount), -1);
    auto changed = discount;
    changed.nonce = "N";
    EXPECT_EQ(pay(changed), -1) << "a nonce is signed in lower case";
    changed = discount;
    changed.timestamp = 43;
    EXPECT_EQ(pay(changed), 12);
    changed = discount;
    changed.keyIdentifier = "K2";
    EXPECT_EQ(pay(changed), 12);
    changed = discount;
    for (auto const* text : {"????", "AAAA", "x", "="}) {
        changed.signature = text;
        EXPECT_EQ(pay(changed), 12) << text;
    }
    payment.applicationUsername = "someone else";
    EXPECT_EQ(pay(discount), 12);
    EXPECT_FALSE(isOfferSignatureValid({.identifier = "K1", .publicKey = "no key", .bundleIdentifier = "app"},
                                       payment));
}

} // namespace
} // namespace trelundo
