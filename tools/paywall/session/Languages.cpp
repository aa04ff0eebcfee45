#include "tools/paywall/session/Languages.h"

#include "trelundo/kit/common/Texts.h"
#include "trelundo/platform/foundation/Locale.h"

#include <algorithm>
#include <unicode/uloc.h>

namespace trelundo::paywall {

std::vector<std::string> languages() {
    auto all = Texts::kitBundle().localizations();
    std::ranges::sort(all);
    return all;
}

bool isKnownLanguage(std::string const& tag) {
    auto const language = Locale{tag}.languageCode();
    char const* const* const known = uloc_getISOLanguages();
    return std::any_of(
        known,
        [&] {
            auto const* end = known;
            while (*end) ++end;
            return end;
        }(),
        [&](char const* code) { return language == code; });
}

} // namespace trelundo::paywall
