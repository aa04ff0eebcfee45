#pragma once

#include "trelundo/platform/foundation/Result.h"

#include <string>
#include <vector>

namespace trelundo {

/// Makes a host's own files (OpenType or TrueType, one face each, any weights and slants) the system family
/// of the process, in which every text of the kit is set; what they lack comes from the fall-back families as
/// before. A weight that is not among them is set in the nearest. Line heights stay those of the system font.
/// Call it before the first screen: texts that were set earlier keep their face. The error names the file
/// that is no font of one weight; the family then stays as it was.
Result<void> setSystemFontFiles(std::vector<std::string> const& paths);

} // namespace trelundo
