#include "tools/paywall/session/Host.h"

#include "tools/paywall/output/Names.h"
#include "trelundo/kit/store/PremiumManager.h"

namespace trelundo::paywall {

Host::Host(Options const& options, EventLog& log)
    : log_(log)
    , username_(options.username)
    , appName_(options.appName) {}

void Host::logEvent(std::string const& name) {
    log_.write("event", {{"name", name}, {"parameters", nullptr}});
}

void Host::logEvent(std::string const& name, EventParameters const& parameters) {
    Json json = Json::object();
    for (auto const& [key, value] : parameters) json[key] = orNull(value);
    log_.write("event", {{"name", name}, {"parameters", json}});
}

void Host::premiumManagerDidLoadProducts(Products const& products) {
    Json identifiers = Json::array();
    for (auto const& product : products) identifiers.push_back(product->productIdentifier());
    log_.write("products",
               {{"identifiers", identifiers}, {"state", nameOf(PremiumManager::sharedInstance().state())}});
}

bool Host::paymentQueueShouldAddStorePayment(SKPaymentQueue& /*queue*/, Ref<SKPayment> const& /*payment*/,
                                             Ref<SKProduct> const& product) {
    logCall("paymentQueueShouldAddStorePayment",
            Json::array({product ? Json(product->productIdentifier()) : Json(nullptr)}));
    return acceptsPromotions_;
}

void Host::userAgreement() { logCall("userAgreement"); }

void Host::privacyPolicy() { logCall("privacyPolicy"); }

void Host::contactUs(std::string const& subject, Ref<UIViewController> const& from) {
    logCall("contactUs", Json::array({subject, from ? Json(from->className()) : Json(nullptr)}));
}

void Host::billingViewControllerDidTapUpdateDetails() { logCall("billingViewControllerDidTapUpdateDetails"); }

void Host::logCall(std::string const& call, Json arguments) {
    log_.write("delegate", {{"call", call}, {"arguments", std::move(arguments)}});
}

} // namespace trelundo::paywall
