#pragma once

#include <string>
#include <string_view>

namespace trelundo::paywall {

/// A message as a terminal may show it: on one line, whatever a file or an argument brought in. Control
/// characters are escaped, bytes that are no UTF-8 become replacement characters, and of what stands in
/// quotes 60 characters stay.
std::string legible(std::string_view message);

} // namespace trelundo::paywall
