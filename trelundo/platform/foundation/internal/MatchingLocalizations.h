#pragma once

#include <string>
#include <vector>

namespace trelundo {

/// The members of `localizations` that serve `languages`, best first and without repetition: for each
/// language the nearest one by the language matching data of CLDR, which knows that Mexico reads "es-419"
/// rather than "es", Angola "pt-PT" and Hong Kong "zh-Hant". Old codes ("iw", "tl") and macrolanguages ("no")
/// find their modern ones. Another language is none, however near, unless the two differ in name more than
/// in kind, as Bosnian and Croatian do; nor is a script that readers of the wanted one need not know.
std::vector<std::string> matchingLocalizations(std::vector<std::string> const& languages,
                                               std::vector<std::string> const& localizations);

} // namespace trelundo
