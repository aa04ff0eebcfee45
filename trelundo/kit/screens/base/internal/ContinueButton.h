#pragma once

#include "trelundo/platform/uikit/text/UIFont.h"

#include <string_view>

namespace trelundo {

/// Width in points of a continue button that has room for a seven-day trial: the localised `trialKey` with
/// "%%%" replaced by the localised "7 days", set in `font` and rounded up to a whole point, plus `padding`.
double continueButtonWidth(std::string_view trialKey, UIFont font, double padding);

} // namespace trelundo
