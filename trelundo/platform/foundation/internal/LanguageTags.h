#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace trelundo {

/// The tags in POSIX locale variables: "de_CH.UTF-8" gives "de-CH", "sr_RS@latin" gives "sr-Latn-RS". The
/// list in LANGUAGE comes first, then the first one set of LC_ALL, LC_MESSAGES and LANG. "C" and "POSIX" name
/// no language. `variable` returns a variable's text, or null.
std::vector<std::string> languageTags(std::function<char const*(char const*)> const& variable);

/// The members of `localizations` that serve `languages`, best first and without repetition: for each
/// language the same tag, else the one with its language, script and no region, else another region of that
/// language and script. Scripts are inferred ("zh-TW" is served by "zh-Hant", never by "zh-Hans").
std::vector<std::string> matchingLocalizations(std::vector<std::string> const& languages,
                                               std::vector<std::string> const& localizations);

} // namespace trelundo
