#include "tools/paywall/demo/Demonstration.h"

#include "tools/paywall/Failure.h"
#include "trelundo/platform/foundation/Bundle.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <set>

namespace trelundo {
std::span<EmbeddedFile const> demoResources();
}

namespace trelundo::paywall {

namespace {

struct DemoFeature {
    char const* caption;
    char const* picture;
};
constexpr std::array demoFeatures{
    DemoFeature{"All Templates", "feature_templates"}, DemoFeature{"Royalty Free Music", "feature_music"},
    DemoFeature{"Premium Fonts", "feature_fonts"},     DemoFeature{"Stock Photos", "feature_photos"},
    DemoFeature{"Cloud Backup", "feature_cloud"},      DemoFeature{"Family Sharing", "feature_family"},
};

} // namespace

std::string_view demonstrationCatalogue() {
    auto const found = std::ranges::find(demoResources(), "Demonstration.storekit", &EmbeddedFile::path);
    return found->bytes;
}

std::string demonstrationFeatures() {
    std::string text;
    for (auto const& feature : demoFeatures) {
        if (!text.empty()) text += ';';
        text += Bundle::main().localizedString(feature.caption, {}, "Demonstration");
        text += std::string{":"} + feature.picture;
    }
    return text;
}

void addHostPictures(std::vector<std::string> const& folders) {
    static bool const isPrepared = [] {
        Bundle::main().addEmbeddedFiles(demoResources());
        return true;
    }();
    static_cast<void>(isPrepared);
    static std::set<std::string> added;
    for (auto const& folder : folders) {
        if (!added.insert(folder).second) continue;
        if (!std::filesystem::is_directory(folder)) failInput("--pictures: " + folder + " is not a folder");
        Bundle::main().addFolder(folder);
    }
}

} // namespace trelundo::paywall
