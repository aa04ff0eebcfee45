#pragma once

#include "tools/paywall/Options.h"
#include "tools/paywall/output/EventLog.h"
#include "trelundo/kit/screens/base/BaseViewControllerDelegate.h"
#include "trelundo/kit/screens/notice/BillingViewControllerDelegate.h"
#include "trelundo/kit/store/PremiumManagerDelegate.h"

namespace trelundo::paywall {

/// The demonstration host: answers what the options say and writes down everything that it hears.
class Host : public NSObject,
             public PremiumManagerDelegate,
             public BaseViewControllerDelegate,
             public BillingViewControllerDelegate {
public:
    Host(Options const& options, EventLog& log);

    /// Whether a promoted purchase goes on (yes at first).
    void setAcceptsPromotions(bool accepts) { acceptsPromotions_ = accepts; }

    std::optional<std::string> applicationUsername() const override { return username_; }
    void logEvent(std::string const& name) override;
    void logEvent(std::string const& name, EventParameters const& parameters) override;
    void premiumManagerDidLoadProducts(Products const& products) override;
    bool paymentQueueShouldAddStorePayment(SKPaymentQueue& queue, Ref<SKPayment> const& payment,
                                           Ref<SKProduct> const& product) override;

    void userAgreement() override;
    void privacyPolicy() override;
    void contactUs(std::string const& subject, Ref<UIViewController> const& from) override;
    std::optional<std::string> appName() const override { return appName_; }
    void billingViewControllerDidTapUpdateDetails() override;

private:
    void logCall(std::string const& call, Json arguments = Json::array());

    EventLog& log_;
    std::optional<std::string> username_;
    std::optional<std::string> appName_;
    bool acceptsPromotions_ = true;
};

} // namespace trelundo::paywall
