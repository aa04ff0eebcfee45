#include "tools/paywall/session/Languages.h"

#include "trelundo/kit/common/Texts.h"
#include "trelundo/platform/foundation/Locale.h"
#include "trelundo/platform/uikit/controllers/UIApplication.h"

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

void useLanguage(std::string const& tag) {
    Locale::setPreferredLanguages({tag});
    auto const chosen = Texts::kitBundle().preferredLocalizations();
    bool const isRightToLeft = !chosen.empty() && Locale{chosen.front()}.isRightToLeft();
    UIApplication::shared().setUserInterfaceLayoutDirection(
        isRightToLeft ? UIUserInterfaceLayoutDirection::rightToLeft
                      : UIUserInterfaceLayoutDirection::leftToRight);
}

} // namespace trelundo::paywall
