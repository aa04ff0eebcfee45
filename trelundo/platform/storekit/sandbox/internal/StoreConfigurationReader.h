#pragma once

#include "trelundo/platform/foundation/internal/JsonValue.h"
#include "trelundo/platform/storekit/sandbox/StoreConfiguration.h"
#include "trelundo/platform/storekit/sandbox/internal/Storefront.h"

namespace trelundo {

/// Turns the JSON of one file into a configuration. What cannot be sold is left out with a warning; only a
/// text whose frame is wrong (no object, no list of products, a list that is none) is an error.
class StoreConfigurationReader {
public:
    StoreConfigurationReader(std::string file, StoreConfiguration::Options options);

    Result<StoreConfiguration> read(JsonValue const& root) &&;

private:
    using ProductKind = StoreConfiguration::ProductKind;

    void checkTypes(JsonValue const& value);
    void checkType(std::string const& key, JsonValue const& value);
    void readSettings(JsonValue const& root);
    void readStorefront(JsonValue const& settings);
    void readStoreErrors(JsonValue const& settings);
    Result<void> readLists(JsonValue const& root);
    void readList(JsonValue const& list, std::string const& key);
    void readGroup(JsonValue const& group);
    void readProduct(JsonValue const& entry, ProductKind usualKind, std::string_view group);
    ProductKind kindOf(JsonValue const& entry, ProductKind usualKind);
    void readTexts(JsonValue const& entry, SKProduct::Fields& fields) const;
    JsonValue const* localization(JsonValue const& entry) const;
    void readSubscription(JsonValue const& entry, std::string_view group, SKProduct::Fields& fields);
    Ref<SKProductDiscount> introductoryOffer(JsonValue const& entry);
    Ref<SKProductDiscount> offer(JsonValue const& entry, SKProductDiscountType type);
    Ref<SKProductDiscount> leaveOut(std::string const& offer);
    int numberOfPeriods(JsonValue const& entry);
    void keep(ProductKind kind, SKProduct::Fields fields);
    void warn(std::string const& text);

    std::string file_;
    StoreConfiguration::Options options_;
    std::string subject_; // what warnings are about: a product
    Storefront storefront_;
    Locale priceLocale_{"en_US"};
    StoreConfiguration configuration_;
};

} // namespace trelundo
