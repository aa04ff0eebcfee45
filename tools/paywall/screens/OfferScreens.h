#pragma once

#include "tools/paywall/screens/Screens.h"

namespace trelundo::paywall {

// The offers and the notice, as the tool knows them.
ScreenType offerSheet();
ScreenType percentageOfferWithBadge();
ScreenType sentenceOffer();
ScreenType percentageOffer();
ScreenType billingNotice();

} // namespace trelundo::paywall
