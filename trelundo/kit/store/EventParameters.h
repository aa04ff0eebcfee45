#pragma once

#include <map>
#include <optional>
#include <string>

namespace trelundo {

/// Parameters of an analytics event. An entry without value stands for a known absence.
using EventParameters = std::map<std::string, std::optional<std::string>>;

} // namespace trelundo
