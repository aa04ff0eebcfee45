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
    // Knows the old codes too, unlike the list of languages.
    return *uloc_getISO3Language(Locale{tag}.languageCode().c_str()) != '\0';
}

} // namespace trelundo::paywall
