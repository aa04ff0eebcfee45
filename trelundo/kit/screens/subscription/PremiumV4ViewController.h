#pragma once

#include "trelundo/kit/screens/subscription/PremiumV2ViewController.h"

namespace trelundo {

/// The second-generation paywall that offers the yearly plan, with its saving, to whoever is about to buy a
/// weekly or monthly one. Hosts must not offer zero-priced weekly or monthly plans on it: the saving would
/// end the program.
class PremiumV4ViewController : public PremiumV2ViewController {
public:
    using PremiumV2ViewController::PremiumV2ViewController;

protected:
    void purchaseProduct() override;

private:
    struct Upgrade {
        Ref<SKProduct> product;
        Ref<SKProduct> yearly;
        int periodsPerYear;
        char const* keepText;
    };
    void offerUpgrade(Upgrade const& upgrade);
};

} // namespace trelundo
