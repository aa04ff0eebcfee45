#pragma once

#include "trelundo/platform/uikit/controls/UIButton.h"

#include <string_view>

namespace trelundo {

/// A rounded continue button, placed by constraints only; its title and its action are the screen's.
Ref<UIButton> makeContinueButton(UIButtonType type, UIFont titleFont, UIColor background);

/// Width in points of a continue button that has room for a seven-day trial: the localised `trialKey` with
/// "%%%" replaced by the localised "7 days", set in `font` and rounded up to a whole point, plus `padding`.
double continueButtonWidth(std::string_view trialKey, UIFont font, double padding);

} // namespace trelundo
