#pragma once

#include "trelundo/kit/screens/offer/PercentageOfferViewController.h"

namespace trelundo {

/// The percentage offer without badge; the button's title is always black.
class OfferV4ViewController : public PercentageOfferViewController {
public:
    OfferV4ViewController() = default;
    explicit OfferV4ViewController(NSCoder const& /*archive*/) {}
};

} // namespace trelundo
