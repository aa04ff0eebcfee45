#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace trelundo::paywall {

/// `; did you mean "NAME"?` with the name that is nearest to `word`; empty when none is near. Capitals do not
/// count, and a third of the letters may differ.
std::string suggestion(std::string_view word, std::vector<std::string> const& names);

} // namespace trelundo::paywall
