#include "trelundo/kit/common/Texts.h"

#include "trelundo/platform/foundation/Locale.h"

namespace trelundo {

std::span<EmbeddedFile const> kitResources();

std::string Texts::localizedString(std::string_view key, Bundle& bundle, std::string_view resource) {
    return bundle.localizedString(key, {}, resource);
}

Bundle& Texts::kitBundle() {
    static Bundle& bundle = *[] {
        auto* kit = new Bundle{"TrelundoKit_Premium"}; // lives as long as the process, like the main bundle
        kit->addEmbeddedFiles(kitResources());
        return kit;
    }();
    return bundle;
}

std::string Texts::text(std::string_view key) { return localizedString(key, kitBundle(), "Premium"); }

bool Texts::isRightToLeft() {
    struct Direction {
        std::vector<std::string> languages;
        bool isRightToLeft = false;
    };
    // Matching the user's languages with those of the bundle takes longer than a price's text.
    thread_local Direction known;
    if (auto languages = Locale::preferredLanguages(); languages != known.languages) {
        auto const shown = kitBundle().preferredLocalizations();
        known = {std::move(languages), !shown.empty() && Locale{shown.front()}.isRightToLeft()};
    }
    return known.isRightToLeft;
}

} // namespace trelundo
