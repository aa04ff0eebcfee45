#pragma once

#include <string>
#include <vector>

namespace trelundo {

/// The members of `localizations` that serve `languages`, best first and without repetition: for each
/// language the same tag, else the one with its language, script and no region, else another region of that
/// language and script. Scripts are inferred ("zh-TW" is served by "zh-Hant", never by "zh-Hans").
std::vector<std::string> matchingLocalizations(std::vector<std::string> const& languages,
                                               std::vector<std::string> const& localizations);

} // namespace trelundo
