#include "trelundo/platform/foundation/internal/MatchingLocalizations.h"

#include <algorithm>
#include <optional>
#include <unicode/locid.h>

namespace trelundo {

namespace {

/// Language, script and region of a tag, deprecated codes replaced and the script inferred.
struct LanguageParts {
    explicit LanguageParts(std::string const& tag) {
        auto locale = icu::Locale::createCanonical(tag.c_str());
        language = locale.getLanguage();
        region = locale.getCountry();
        hasOwnScript = *locale.getScript() != '\0';
        UErrorCode status = U_ZERO_ERROR;
        locale.addLikelySubtags(status);
        script = locale.getScript();
    }
    std::string language, script, region;
    bool hasOwnScript;
};

enum class Match { none, otherRegion, language, languageAndScript, exact };

Match match(LanguageParts const& wanted, LanguageParts const& offered) {
    if (wanted.language.empty() || wanted.language != offered.language || wanted.script != offered.script)
        return Match::none;
    if (wanted.region == offered.region) return Match::exact;
    if (!offered.region.empty()) return Match::otherRegion;
    return offered.hasOwnScript ? Match::languageAndScript : Match::language;
}

std::optional<std::string> bestLocalization(std::string const& language,
                                            std::vector<std::string> const& localizations) {
    LanguageParts const wanted{language};
    auto best = Match::none;
    std::optional<std::string> found;
    for (auto const& localization : localizations) {
        auto const quality = match(wanted, LanguageParts{localization});
        if (quality <= best) continue;
        best = quality;
        found = localization;
    }
    return found;
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
