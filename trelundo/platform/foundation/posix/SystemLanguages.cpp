#include "trelundo/platform/foundation/internal/SystemLanguages.h"

#include "trelundo/platform/foundation/posix/LocaleVariables.h"

#include <cstdlib>

namespace trelundo {

std::vector<std::string> systemLanguages() { return languageTags(std::getenv); }

} // namespace trelundo
