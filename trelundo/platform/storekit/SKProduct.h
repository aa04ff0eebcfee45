#pragma once

#include "trelundo/platform/foundation/Decimal.h"
#include "trelundo/platform/foundation/Locale.h"
#include "trelundo/platform/foundation/Ref.h"

#include <optional>
#include <string>
#include <vector>

namespace trelundo {

enum class SKProductPeriodUnit : int { day = 0, week = 1, month = 2, year = 3 };
enum class SKProductDiscountPaymentMode : int { payAsYouGo = 0, payUpFront = 1, freeTrial = 2 };
enum class SKProductDiscountType : int { introductory = 0, subscription = 1 };

/// A length of time: so many units, never normalised (7 days stay 7 days). 0 units: no subscription.
struct SKProductSubscriptionPeriod {
    int numberOfUnits = 0;
    SKProductPeriodUnit unit = SKProductPeriodUnit::day;

    bool is(int units, SKProductPeriodUnit of) const { return numberOfUnits == units && unit == of; }
    bool operator==(SKProductSubscriptionPeriod const&) const = default;
};

/// Reduced terms of a subscription, introductory or promotional. Immutable.
class SKProductDiscount : public NSObject {
public:
    struct Fields {
        std::optional<std::string> identifier = std::nullopt; // none for introductory offers
        SKProductDiscountType type = SKProductDiscountType::introductory;
        SKProductDiscountPaymentMode paymentMode = SKProductDiscountPaymentMode::freeTrial;
        Decimal price = {}; // of one period; 0 for a free trial
        Locale priceLocale{"en_US"};
        SKProductSubscriptionPeriod subscriptionPeriod = {};
        int numberOfPeriods = 1;
    };
    explicit SKProductDiscount(Fields fields)
        : fields_(std::move(fields)) {}

    std::optional<std::string> const& identifier() const { return fields_.identifier; }
    SKProductDiscountType type() const { return fields_.type; }
    SKProductDiscountPaymentMode paymentMode() const { return fields_.paymentMode; }
    Decimal const& price() const { return fields_.price; }
    Locale const& priceLocale() const { return fields_.priceLocale; }
    SKProductSubscriptionPeriod const& subscriptionPeriod() const { return fields_.subscriptionPeriod; }
    int numberOfPeriods() const { return fields_.numberOfPeriods; }

private:
    Fields fields_;
};

/// What the store sells under an identifier. Immutable; two products are the same only by identity.
class SKProduct : public NSObject {
public:
    struct Fields {
        std::string productIdentifier = {};
        std::string localizedTitle = {};
        std::string localizedDescription = {};
        Decimal price = {}; // regular price of one period
        Locale priceLocale{"en_US"};
        bool isFamilyShareable = false;
        std::optional<SKProductSubscriptionPeriod> subscriptionPeriod =
            std::nullopt; // none: not a subscription
        std::optional<std::string> subscriptionGroupIdentifier = std::nullopt;
        Ref<SKProductDiscount> introductoryPrice = nullptr; // null: none configured
        std::vector<Ref<SKProductDiscount>> discounts = {}; // promotional offers only
    };
    explicit SKProduct(Fields fields)
        : fields_(std::move(fields)) {}

    std::string const& productIdentifier() const { return fields_.productIdentifier; }
    std::string const& localizedTitle() const { return fields_.localizedTitle; }
    std::string const& localizedDescription() const { return fields_.localizedDescription; }
    Decimal const& price() const { return fields_.price; }
    Locale const& priceLocale() const { return fields_.priceLocale; }
    bool isFamilyShareable() const { return fields_.isFamilyShareable; }
    std::optional<SKProductSubscriptionPeriod> const& subscriptionPeriod() const {
        return fields_.subscriptionPeriod;
    }
    std::optional<std::string> const& subscriptionGroupIdentifier() const {
        return fields_.subscriptionGroupIdentifier;
    }
    Ref<SKProductDiscount> introductoryPrice() const { return fields_.introductoryPrice; }
    std::vector<Ref<SKProductDiscount>> const& discounts() const { return fields_.discounts; }

private:
    Fields fields_;
};

} // namespace trelundo
