#include "trelundo/platform/foundation/internal/MatchingLocalizations.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unicode/localematcher.h>
#include <vector>

namespace trelundo {

namespace {

icu::Locale canonical(std::string const& tag) { return icu::Locale::createCanonical(tag.c_str()); }

/// How many characters of `wanted` the tag `offered` spells out; 0 when it says anything else.
std::size_t agreement(icu::Locale const& wanted, icu::Locale const& offered) {
    std::string_view const whole = wanted.getName();
    std::string_view const part = offered.getName();
    bool const isWhole = part.size() == whole.size();
    return whole.starts_with(part) && (isWhole || whole[part.size()] == '_') ? part.size() : 0;
}

icu::LocaleMatcher matcherFor(std::vector<std::string> const& localizations, UErrorCode& status) {
    // Further apart than Croatian and Bosnian is another language, which the user would have to list.
    return icu::LocaleMatcher::Builder{}
        .setSupportedLocalesViaConverter(localizations.begin(), localizations.end(), canonical)
        .setNoDefaultLocale()
        .setMaxDistance(icu::Locale{"hr"}, icu::Locale{"bs"})
        .build(status);
}

std::optional<std::string> bestLocalization(std::string const& language,
                                            std::vector<std::string> localizations) {
    auto const wanted = canonical(language);
    if (*wanted.getLanguage() == '\0') return std::nullopt; // would be taken for English
    // The matcher takes the first of tags that mean the same and of regions that are equally near.
    std::ranges::stable_sort(localizations, std::greater{}, [&](std::string const& localization) {
        return agreement(wanted, canonical(localization));
    });
    UErrorCode status = U_ZERO_ERROR;
    auto const matcher = matcherFor(localizations, status);
    auto const index = matcher.getBestMatchResult(wanted, status).getSupportedIndex();
    if (U_FAILURE(status) || index < 0) return std::nullopt;
    return localizations[static_cast<std::size_t>(index)];
}

} // namespace

std::vector<std::string> matchingLocalizations(std::vector<std::string> const& languages,
                                               std::vector<std::string> const& localizations) {
    std::vector<std::string> matches;
    for (auto const& language : languages)
        if (auto const best = bestLocalization(language, localizations);
            best && std::ranges::find(matches, *best) == matches.end())
            matches.push_back(*best);
    return matches;
}

} // namespace trelundo
