#pragma once

#include "trelundo/platform/foundation/Ref.h"

#include <cstdint>
#include <optional>
#include <string>

namespace trelundo {

class SKProduct;

/// A signed promotional offer to be applied to a payment. Immutable; checked by the store only.
class SKPaymentDiscount : public NSObject {
public:
    struct Fields {
        std::string identifier = {};    // of the promotional offer
        std::string keyIdentifier = {}; // of the key that signed it
        std::string nonce = {};         // UUID, lower case
        std::string signature = {};     // base64
        std::int64_t timestamp = 0;     // milliseconds since 1970
    };
    explicit SKPaymentDiscount(Fields fields)
        : fields_(std::move(fields)) {}

    std::string const& identifier() const { return fields_.identifier; }
    std::string const& keyIdentifier() const { return fields_.keyIdentifier; }
    std::string const& nonce() const { return fields_.nonce; }
    std::string const& signature() const { return fields_.signature; }
    std::int64_t timestamp() const { return fields_.timestamp; }

private:
    Fields fields_;
};

/// A request to buy. Immutable; SKMutablePayment is the writable form.
class SKPayment : public NSObject {
public:
    struct Fields {
        std::string productIdentifier = {};
        int quantity = 1;
        std::optional<std::string> applicationUsername = std::nullopt; // an opaque account token
        bool simulatesAskToBuyInSandbox = false;
        Ref<SKPaymentDiscount> paymentDiscount = nullptr;
    };
    explicit SKPayment(SKProduct const& product);
    explicit SKPayment(Fields fields)
        : fields_(std::move(fields)) {}

    std::string const& productIdentifier() const { return fields_.productIdentifier; }
    int quantity() const { return fields_.quantity; }
    std::optional<std::string> const& applicationUsername() const { return fields_.applicationUsername; }
    bool simulatesAskToBuyInSandbox() const { return fields_.simulatesAskToBuyInSandbox; }
    Ref<SKPaymentDiscount> paymentDiscount() const { return fields_.paymentDiscount; }
    Fields const& fields() const { return fields_; }

protected:
    Fields fields_;
};

class SKMutablePayment : public SKPayment {
public:
    using SKPayment::SKPayment;
    /// Without a product the payment has no identifier, and the queue refuses it.
    SKMutablePayment()
        : SKPayment(Fields{}) {}

    void setProductIdentifier(std::string identifier) { fields_.productIdentifier = std::move(identifier); }
    void setQuantity(int quantity) { fields_.quantity = quantity; }
    void setApplicationUsername(std::optional<std::string> username) {
        fields_.applicationUsername = std::move(username);
    }
    void setSimulatesAskToBuyInSandbox(bool simulates) { fields_.simulatesAskToBuyInSandbox = simulates; }
    void setPaymentDiscount(Ref<SKPaymentDiscount> discount) {
        fields_.paymentDiscount = std::move(discount);
    }
};

} // namespace trelundo
