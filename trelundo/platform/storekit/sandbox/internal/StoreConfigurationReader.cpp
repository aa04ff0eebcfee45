#include "trelundo/platform/storekit/sandbox/internal/StoreConfigurationReader.h"

#include "trelundo/platform/foundation/internal/MatchingLocalizations.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace trelundo {

namespace {

using ProductKind = StoreConfiguration::ProductKind;
using Kind = JsonValue::Kind;

constexpr int mostUnits = 9999;          // of a period, and most periods of an offer
constexpr std::size_t longestPrice = 40; // characters

struct KindName {
    std::string_view name;
    ProductKind kind;
};
// In lower case, without separators: hand-made files spell them freely.
constexpr std::array kindNames{
    KindName{"consumable", ProductKind::consumable},
    KindName{"nonconsumable", ProductKind::nonConsumable},
    KindName{"nonrenewingsubscription", ProductKind::nonRenewingSubscription},
    KindName{"nonrenewablesubscription", ProductKind::nonRenewingSubscription},
    KindName{"recurringsubscription", ProductKind::autoRenewableSubscription},
    KindName{"autorenewablesubscription", ProductKind::autoRenewableSubscription},
};

struct ModeName {
    std::string_view name;
    SKProductDiscountPaymentMode mode;
};
constexpr std::array modeNames{
    ModeName{"free", SKProductDiscountPaymentMode::freeTrial},
    ModeName{"payAsYouGo", SKProductDiscountPaymentMode::payAsYouGo},
    ModeName{"payUpFront", SKProductDiscountPaymentMode::payUpFront},
};

/// Keys whose value reading passes over when it has another type.
struct MemberType {
    std::string_view key;
    Kind kind;
    std::string_view name;
};
constexpr std::array memberTypes{
    MemberType{"_askToBuyEnabled", Kind::boolean, "true or false"},
    MemberType{"_failTransactionsEnabled", Kind::boolean, "true or false"},
    MemberType{"_locale", Kind::string, "a text"},
    MemberType{"_storeKitErrors", Kind::array, "a list"},
    MemberType{"_storefront", Kind::string, "a text"},
    MemberType{"adHocOffers", Kind::array, "a list"},
    MemberType{"description", Kind::string, "a text"},
    MemberType{"displayName", Kind::string, "a text"},
    MemberType{"familyShareable", Kind::boolean, "true or false"},
    MemberType{"introductoryOffers", Kind::array, "a list"},
    MemberType{"locale", Kind::string, "a text"},
    MemberType{"localizations", Kind::array, "a list"},
    MemberType{"offerID", Kind::string, "a text"},
    MemberType{"paymentMode", Kind::string, "a text"},
    MemberType{"productID", Kind::string, "a text"},
    MemberType{"recurringSubscriptionPeriod", Kind::string, "a text"},
    MemberType{"subscriptionGroupID", Kind::string, "a text"},
    MemberType{"subscriptionPeriod", Kind::string, "a text"},
    MemberType{"subscriptions", Kind::array, "a list"},
    MemberType{"type", Kind::string, "a text"},
};

constexpr std::array listKeys{"products", "nonRenewingSubscriptions", "subscriptionGroups"};

bool isNoObject(JsonValue const& value) { return !value.is(Kind::object); }

std::string plainLetters(std::string_view text) {
    std::string letters;
    for (char const c : text) {
        if (c >= 'A' && c <= 'Z') letters += static_cast<char>(c - 'A' + 'a');
        if (c >= 'a' && c <= 'z') letters += c;
    }
    return letters;
}

/// The text of a price, written as a string or as a number; empty when there is none.
std::string_view priceText(JsonValue const& entry) {
    for (auto const* key : {"displayPrice", "price"}) {
        auto const* value = entry.find(key);
        if (value && (value->is(Kind::string) || value->is(Kind::number))) return value->text;
    }
    return {};
}

/// Digits with an optional fraction, and the exponent that a JSON number may carry.
std::optional<Decimal> price(JsonValue const& entry) {
    auto const text = priceText(entry);
    auto const mark = std::min(text.find_first_of("eE"), text.size());
    int exponent = 0;
    if (mark < text.size()) {
        auto const* const end = text.data() + text.size();
        auto const* const begin = text.data() + mark + (text.substr(mark + 1).starts_with('+') ? 2 : 1);
        auto const [stop, error] = std::from_chars(begin, end, exponent);
        if (error != std::errc{} || stop != end) return std::nullopt;
    }
    bool const isPlain = text.substr(0, mark).find_first_not_of("0123456789.") == std::string_view::npos;
    if (!isPlain || text.size() > longestPrice || exponent < -20 || exponent > 20) return std::nullopt;
    auto const value = Decimal::parse(text);
    return value && !value->isNaN() ? value : std::nullopt;
}

/// One ISO 8601 component in days, weeks, months or years, kept as written: `P7D` stays 7 days.
std::optional<SKProductSubscriptionPeriod> period(std::string_view text) {
    static constexpr std::string_view letters = "DWMY"; // in the order of SKProductPeriodUnit
    if (text.size() < 3 || text.front() != 'P') return std::nullopt;
    auto const unit = letters.find(text.back());
    int units = 0;
    auto const* const end = text.data() + text.size() - 1;
    auto const [stop, error] = std::from_chars(text.data() + 1, end, units);
    bool const isNumber = error == std::errc{} && stop == end && units >= 1 && units <= mostUnits;
    if (!isNumber || unit == std::string_view::npos) return std::nullopt;
    return SKProductSubscriptionPeriod{units, static_cast<SKProductPeriodUnit>(unit)};
}

std::string underscored(std::string_view locale) {
    std::string result{locale};
    std::ranges::replace(result, '-', '_');
    return result;
}

std::string_view languageOf(std::string_view locale) { return locale.substr(0, locale.find_first_of("_-")); }

/// StoreKit 1 does not know instalments, so an offer for a plan billed monthly comes second.
bool isBilledUpFront(JsonValue const& offer) {
    auto const plan = offer.string("billingPlanType");
    return plan.empty() || plan == "BILLED_UPFRONT";
}

} // namespace

StoreConfigurationReader::StoreConfigurationReader(std::string file, StoreConfiguration::Options options)
    : file_(std::move(file))
    , options_(std::move(options)) {}

Result<StoreConfiguration> StoreConfigurationReader::read(JsonValue const& root) && {
    if (!root.is(Kind::object))
        return Error{file_ + ":1: not a StoreKit configuration: an object is expected"};
    for (auto const& [key, value] : root.members)
        if (key == "settings" || std::ranges::find(listKeys, key) != listKeys.end()) checkTypes(value);
    readSettings(root);
    if (auto const lists = readLists(root); !lists) return lists.error();
    return std::move(configuration_);
}

void StoreConfigurationReader::warn(std::string const& text) {
    configuration_.warnings_.push_back(file_ + ": " + subject_ + text);
}

/// Warns of every known key whose value has another type, and of what stands in a list without being an
/// object.
void StoreConfigurationReader::checkTypes(JsonValue const& value) {
    if (auto const product = value.string("productID"); !product.empty())
        subject_ = "product \"" + std::string{product} + "\": ";
    for (auto const& [key, member] : value.members) {
        checkType(key, member);
        checkTypes(member);
    }
    for (auto const& each : value.elements) checkTypes(each);
    if (value.find("productID")) subject_.clear();
}

void StoreConfigurationReader::checkType(std::string const& key, JsonValue const& value) {
    auto const type = std::ranges::find(memberTypes, key, &MemberType::key);
    if (type == memberTypes.end() || value.is(Kind::null)) return;
    if (!value.is(type->kind)) warn("key \"" + key + "\": " + std::string{type->name} + " is expected");
    if (key == "localizations" && std::ranges::any_of(value.elements, isNoObject))
        warn("key \"localizations\": an object is expected in the list");
}

// Settings

void StoreConfigurationReader::readSettings(JsonValue const& root) {
    auto& settings = configuration_.settings_;
    if (auto const* entry = root.find("settings")) {
        if (!entry->is(Kind::object)) warn("key \"settings\": an object is expected; the defaults are used");
        readStorefront(*entry);
        if (auto const locale = entry->string("_locale"); !locale.empty()) settings.locale = locale;
        settings.asksToBuy = entry->isSet("_askToBuyEnabled");
        settings.failsTransactions = entry->isSet("_failTransactionsEnabled");
        settings.transactionError = entry->integer("_storeKitError").value_or(0);
        readStoreErrors(*entry);
    }
    if (options_.locale) settings.locale = *options_.locale;
    priceLocale_ = Locale{storefront_.priceLocale(settings.locale)};
    if (!priceLocale_.identifier().empty()) return;
    warn("key \"_locale\": no usable locale; en_US is used");
    settings.locale = "en_US";
    priceLocale_ = Locale{storefront_.priceLocale(settings.locale)};
}

void StoreConfigurationReader::readStorefront(JsonValue const& settings) {
    auto const code = settings.string("_storefront");
    if (code.empty()) return;
    auto known = Storefront::find(code);
    if (!known) warn("key \"_storefront\": " + known.error().message + "; USA is used");
    storefront_ = std::move(known).value_or({});
    configuration_.settings_.storefront = storefront_.code;
}

void StoreConfigurationReader::readStoreErrors(JsonValue const& settings) {
    auto const* errors = settings.find("_storeKitErrors");
    if (!errors) return;
    auto& target = configuration_.settings_;
    for (auto const& each : errors->elements) {
        if (!each.isSet("enabled")) continue;
        auto const name = each.string("name");
        if (name == "Load Products") target.failsLoadingProducts = true;
        if (name == "Purchase") target.failsTransactions = true;
        if (name == "App Store Sync") target.failsRestoring = true;
    }
}

// Products

Result<void> StoreConfigurationReader::readLists(JsonValue const& root) {
    if (std::ranges::none_of(listKeys, [&](auto const* key) { return root.find(key); }))
        return Error{file_ + ": not a StoreKit configuration: none of \"products\", "
                             "\"nonRenewingSubscriptions\" and \"subscriptionGroups\" is there"};
    for (auto const& [key, value] : root.members) {
        if (std::ranges::find(listKeys, key) == listKeys.end()) continue;
        if (!value.is(Kind::array) && !value.is(Kind::null))
            return Error{file_ + ": key \"" + key + "\": a list is expected"};
        readList(value, key);
    }
    return {};
}

void StoreConfigurationReader::readList(JsonValue const& list, std::string const& key) {
    auto const usualKind =
        key == "nonRenewingSubscriptions" ? ProductKind::nonRenewingSubscription : ProductKind::nonConsumable;
    for (auto const& entry : list.elements) {
        if (key == "subscriptionGroups") {
            if (isNoObject(entry)) warn("a subscription group that is no object is left out");
            readGroup(entry);
        } else {
            readProduct(entry, usualKind, {});
        }
    }
}

void StoreConfigurationReader::readGroup(JsonValue const& group) {
    auto const* subscriptions = group.find("subscriptions");
    if (!subscriptions) return;
    for (auto const& entry : subscriptions->elements)
        readProduct(entry, ProductKind::autoRenewableSubscription, group.string("id"));
}

void StoreConfigurationReader::readProduct(JsonValue const& entry, ProductKind usualKind,
                                           std::string_view group) {
    auto const identifier = entry.find("productID") ? entry.string("productID") : entry.string("id");
    if (identifier.empty()) return warn("a product without \"productID\" is left out");
    subject_ = "product \"" + std::string{identifier} + "\": ";
    SKProduct::Fields fields{.productIdentifier = std::string{identifier}, .priceLocale = priceLocale_};
    if (configuration_.find(identifier)) {
        warn("listed twice; the first is used");
    } else if (auto const amount = price(entry)) {
        fields.price = *amount;
        fields.isFamilyShareable = entry.isSet("familyShareable") || entry.isSet("familySharable");
        readTexts(entry, fields);
        auto const kind = kindOf(entry, usualKind);
        if (kind == ProductKind::autoRenewableSubscription) {
            readSubscription(entry, group, fields);
        } else if (options_.givesZeroUnitPeriods) {
            fields.subscriptionPeriod = SKProductSubscriptionPeriod{};
        }
        keep(kind, std::move(fields));
    } else {
        warn("key \"displayPrice\": \"" + std::string{priceText(entry)} +
             "\" is no price; the product is left out");
    }
    subject_.clear();
}

StoreConfiguration::ProductKind StoreConfigurationReader::kindOf(JsonValue const& entry,
                                                                 ProductKind usualKind) {
    auto kind = usualKind;
    if (auto const type = entry.string("type"); !type.empty()) {
        auto const known = std::ranges::find(kindNames, plainLetters(type), &KindName::name);
        if (known != kindNames.end()) kind = known->kind;
        if (known == kindNames.end()) warn("key \"type\": unknown type \"" + std::string{type} + "\"");
    }
    if (kind == ProductKind::autoRenewableSubscription &&
        !period(entry.string("recurringSubscriptionPeriod"))) {
        warn("key \"recurringSubscriptionPeriod\": no period; the product becomes a one-time purchase");
        return ProductKind::nonConsumable;
    }
    return kind;
}

void StoreConfigurationReader::keep(ProductKind kind, SKProduct::Fields fields) {
    if (fields.price.isZero())
        warn("key \"displayPrice\": offers, and paywalls that tell a saving against it, end the program with "
             "a price of 0");
    configuration_.positions_[fields.productIdentifier] = configuration_.products_.size();
    configuration_.products_.push_back({kind, make<SKProduct>(std::move(fields))});
}

// Texts

void StoreConfigurationReader::readTexts(JsonValue const& entry, SKProduct::Fields& fields) const {
    auto const* texts = localization(entry);
    if (!texts) texts = &entry;
    fields.localizedTitle = texts->find("displayName") ? texts->string("displayName") : texts->string("name");
    fields.localizedDescription = texts->string("description");
}

JsonValue const* StoreConfigurationReader::localization(JsonValue const& entry) const {
    auto const* list = entry.find("localizations");
    if (!list || list->elements.empty()) return nullptr;
    auto const wanted = underscored(configuration_.settings_.locale);
    auto const first = [&](auto const& matches) {
        auto const found = std::ranges::find_if(list->elements, matches);
        return found == list->elements.end() ? nullptr : &*found;
    };
    auto const localeOf = [](JsonValue const& each) { return underscored(each.string("locale")); };
    if (auto const* exact = first([&](auto const& each) { return localeOf(each) == wanted; })) return exact;
    // Traditional Chinese is no help to a reader of simplified.
    std::vector<std::string> locales;
    for (auto const& each : list->elements) locales.push_back(localeOf(each));
    if (auto const matches = matchingLocalizations({wanted}, locales); !matches.empty())
        return first([&](auto const& each) { return localeOf(each) == matches.front(); });
    auto const hasLanguage = [&](auto const& each) {
        return languageOf(each.string("locale")) == languageOf(wanted);
    };
    if (auto const* sameLanguage = first(hasLanguage)) return sameLanguage;
    if (auto const* english = first([&](auto const& each) { return localeOf(each) == "en_US"; }))
        return english;
    return &list->elements.front();
}

// Subscriptions

void StoreConfigurationReader::readSubscription(JsonValue const& entry, std::string_view group,
                                                SKProduct::Fields& fields) {
    fields.subscriptionPeriod = period(entry.string("recurringSubscriptionPeriod"));
    auto const own = entry.string("subscriptionGroupID");
    if (auto const identifier = own.empty() ? group : own; !identifier.empty())
        fields.subscriptionGroupIdentifier = std::string{identifier};
    fields.introductoryPrice = introductoryOffer(entry);
    if (auto const* promotions = entry.find("adHocOffers")) {
        for (auto const& each : promotions->elements) {
            if (auto discount = offer(each, SKProductDiscountType::subscription))
                fields.discounts.push_back(std::move(discount));
        }
    }
}

Ref<SKProductDiscount> StoreConfigurationReader::introductoryOffer(JsonValue const& entry) {
    std::vector<JsonValue const*> candidates;
    for (auto const* key : {"introductoryOffer", "introductoryOffers"}) {
        auto const* value = entry.find(key);
        if (!value) continue;
        if (value->is(Kind::object)) candidates.push_back(value);
        for (auto const& each : value->elements) candidates.push_back(&each);
    }
    std::ranges::stable_partition(candidates, [](auto const* each) { return isBilledUpFront(*each); });
    for (auto const* each : candidates) {
        if (auto discount = offer(*each, SKProductDiscountType::introductory)) return discount;
    }
    return nullptr;
}

Ref<SKProductDiscount> StoreConfigurationReader::offer(JsonValue const& entry, SKProductDiscountType type) {
    if (entry.string("paymentMode") == "none") return nullptr;
    SKProductDiscount::Fields fields{.type = type, .priceLocale = priceLocale_};
    std::string name = "an introductory offer";
    if (type == SKProductDiscountType::subscription) {
        // Without the key the offer has no identifier; the editor's empty text is an offer not yet named.
        if (entry.find("offerID")) fields.identifier = std::string{entry.string("offerID")};
        if (fields.identifier == "") return leaveOut("an offer with an empty \"offerID\"");
        name = "offer \"" + fields.identifier.value_or("") + "\"";
    }
    auto const mode = std::ranges::find(modeNames, entry.string("paymentMode"), &ModeName::name);
    auto const length = period(entry.string("subscriptionPeriod"));
    if (mode == modeNames.end() || !length)
        return leaveOut(name + " without a known payment mode and a period");
    fields.paymentMode = mode->mode;
    fields.subscriptionPeriod = *length;
    fields.numberOfPeriods = numberOfPeriods(entry);
    if (fields.paymentMode != SKProductDiscountPaymentMode::freeTrial) {
        auto const amount = price(entry);
        // Shown with a price of 0, it would look like a free trial.
        if (!amount) return leaveOut(name + " without a price");
        fields.price = *amount;
    }
    return make<SKProductDiscount>(std::move(fields));
}

Ref<SKProductDiscount> StoreConfigurationReader::leaveOut(std::string const& offer) {
    warn(offer + " is left out");
    return nullptr;
}

int StoreConfigurationReader::numberOfPeriods(JsonValue const& entry) {
    if (!entry.find("numberOfPeriods")) return 1;
    auto const number = entry.integer("numberOfPeriods").value_or(0);
    if (number >= 1 && number <= mostUnits) return number;
    warn("key \"numberOfPeriods\": no usable number; 1 is used");
    return 1;
}

} // namespace trelundo
