#pragma once

#include "tools/paywall/output/Json.h"

namespace trelundo::paywall::test {

/// A description from `paywall describe`, one line a view, indented by depth:
///
///     Class name (x, y, width, height) ["run of text" size/weight colour ...] key=value ...
///
/// Left out is what the class's defaults say, a text that its runs tell, and a label for accessibility that
/// is the text. "key" alone is true, "-key" a fact that the class states and this view lacks, a colour
/// without alpha opaque. So different descriptions give different lines.
std::string layoutLines(Json const& description);

} // namespace trelundo::paywall::test
