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
    auto const language = Locale{tag}.languageCode();
    for (auto const* code = uloc_getISOLanguages(); *code; ++code)
        if (language == *code) return true;
    return false;
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
