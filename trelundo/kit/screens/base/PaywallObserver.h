#pragma once

#include "trelundo/kit/screens/base/PaywallOutcome.h"

#include <string>

namespace trelundo {

/// On which screen something happens, and the context that the host gave it.
struct PaywallContext {
    std::string screen; // the name of its class
    std::string source;
    std::string premiumId;
    std::string abTest;
};

/// Hears what users do on the paywall and offer screens of the process, beside the events of
/// PremiumManagerDelegate. On the main thread; what is of no interest is left out.
class PaywallObserver {
public:
    virtual ~PaywallObserver() = default;
    /// A screen has arrived; once for each presentation.
    virtual void paywallShown(PaywallContext const& /*context*/) {}
    /// A tap has moved the selection to another plan.
    virtual void planSelected(PaywallContext const& /*context*/, SKProduct const& /*product*/) {}
    /// The user goes on with `product`: by the continue button, or by a second tap on the selected plan.
    /// Whether anything is bought is told later; null: nothing is selected.
    virtual void continuePressed(PaywallContext const& /*context*/, Ref<SKProduct> const& /*product*/) {}
    /// The screen has gone; once for each presentation.
    virtual void paywallEnded(PaywallContext const& /*context*/, PaywallOutcome const& /*outcome*/) {}
};

} // namespace trelundo
