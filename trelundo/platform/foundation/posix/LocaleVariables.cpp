#include "trelundo/platform/foundation/posix/LocaleVariables.h"

#include "trelundo/platform/foundation/Strings.h"

#include <algorithm>
#include <string_view>

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

} // namespace trelundo
