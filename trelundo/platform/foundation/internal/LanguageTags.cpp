#include "trelundo/platform/foundation/internal/LanguageTags.h"

#include "trelundo/platform/foundation/Strings.h"

#include <algorithm>
#include <optional>
#include <unicode/locid.h>

namespace trelundo {

namespace {

std::string scriptOfModifier(std::string_view modifier) {
    if (modifier == "latin") return "-Latn";
    if (modifier == "cyrillic") return "-Cyrl";
    if (modifier == "devanagari") return "-Deva";
    return {};
}

/// The text before the first of `separators`, which is cut off `text` together with it.
std::string_view takeUpTo(std::string_view& text, std::string_view separators) {
    auto const end = std::min(text.find_first_of(separators), text.size());
    auto const front = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return front;
}

/// The tag of one POSIX name (language[_REGION][.charset][@modifier]); empty when it names no language.
std::string tagOfPosixName(std::string_view name) {
    auto const withoutModifier = takeUpTo(name, "@");
    auto const modifier = name;
    auto rest = withoutModifier;
    auto region = takeUpTo(rest, ".");
    auto const language = takeUpTo(region, "_-");
    if (language.empty() || language == "C" || language == "POSIX") return {};
    auto tag = std::string{language} + scriptOfModifier(modifier);
    if (!region.empty()) tag += '-' + std::string{region};
    std::ranges::replace(tag, '_', '-');
    return tag;
}

void appendOnce(std::vector<std::string>& list, std::string text) {
    if (!text.empty() && std::ranges::find(list, text) == list.end()) list.push_back(std::move(text));
}

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

std::vector<std::string> languageTags(std::function<char const*(char const*)> const& variable) {
    auto const text = [&](char const* name) {
        auto const* value = variable(name);
        return std::string_view{value ? value : ""};
    };
    std::vector<std::string> tags;
    for (auto const& name : split(text("LANGUAGE"), ':')) appendOnce(tags, tagOfPosixName(name));
    for (auto const* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        if (text(name).empty()) continue;
        appendOnce(tags, tagOfPosixName(text(name)));
        break;
    }
    return tags;
}

std::vector<std::string> matchingLocalizations(std::vector<std::string> const& languages,
                                               std::vector<std::string> const& localizations) {
    std::vector<std::string> matches;
    for (auto const& language : languages)
        if (auto localization = bestLocalization(language, localizations)) appendOnce(matches, *localization);
    return matches;
}

} // namespace trelundo
