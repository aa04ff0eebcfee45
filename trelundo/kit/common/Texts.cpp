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
    auto const languages = kitBundle().preferredLocalizations();
    return !languages.empty() && Locale{languages.front()}.isRightToLeft();
}

} // namespace trelundo
