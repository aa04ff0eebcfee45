#include "trelundo/kit/screens/offer/OfferV2ViewController.h"

namespace trelundo {

Ref<UIView> OfferV2ViewController::badge() {
    return limitedTimeOfferLabel_([this] { return makeBadge(isSmallScreen()); });
}

} // namespace trelundo
