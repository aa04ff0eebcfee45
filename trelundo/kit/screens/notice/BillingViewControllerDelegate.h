#pragma once

namespace trelundo {

/// Hears from the billing notice.
class BillingViewControllerDelegate {
public:
    virtual ~BillingViewControllerDelegate() = default;
    /// The user wants to update the payment details. Called while the notice is still leaving.
    virtual void billingViewControllerDidTapUpdateDetails() = 0;
};

} // namespace trelundo
