#include "common/Common.h"

namespace trelundo {

std::span<EmbeddedFile const> kitResources();

namespace {
constexpr std::string_view kitTable = "Premium";
}

std::string Common::localizedString(std::string_view key, Bundle& bundle, std::string_view resource) {
    return bundle.localizedString(key, {}, resource);
}

Ref<UIImage> Common::loadImageBundle(std::string const& name, Bundle& bundle, std::string_view /*resource*/) {
    return UIImage::named(name, bundle);
}

Bundle& Common::kitBundle() {
    static Bundle& bundle = *[] {
        auto* kit = new Bundle{"TrelundoKit_Premium"}; // lives as long as the process, like the main bundle
        kit->addEmbeddedFiles(kitResources());
        return kit;
    }();
    return bundle;
}

std::string Common::text(std::string_view key) { return localizedString(key, kitBundle(), kitTable); }

Ref<UIImage> Common::image(std::string const& name) { return loadImageBundle(name, kitBundle(), kitTable); }

} // namespace trelundo
