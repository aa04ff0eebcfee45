#pragma once

#include "trelundo/platform/foundation/Locale.h"

#include <string>

namespace trelundo {

/// The identifier under which the locale library finds the data of `locale`. A locale without data is spelled
/// as the root locale with the same currency, because the library would fall back to the host's own language.
std::string localeDataIdentifier(Locale const& locale);

} // namespace trelundo
