#pragma once

#include <functional>
#include <string>
#include <vector>

namespace trelundo {

/// The tags in POSIX locale variables: "de_CH.UTF-8" gives "de-CH", "sr_RS@latin" gives "sr-Latn-RS". The
/// list in LANGUAGE comes first, then the first one set of LC_ALL, LC_MESSAGES and LANG. "C" and "POSIX" name
/// no language. `variable` returns a variable's text, or null.
std::vector<std::string> languageTags(std::function<char const*(char const*)> const& variable);

} // namespace trelundo
