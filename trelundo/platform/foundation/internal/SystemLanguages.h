#pragma once

#include <string>
#include <vector>

namespace trelundo {

/// The languages that the user has told the system, as tags ("en-US"), most wanted first; may be empty.
std::vector<std::string> systemLanguages();

} // namespace trelundo
