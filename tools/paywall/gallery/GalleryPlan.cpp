#include "tools/paywall/gallery/GalleryPlan.h"

#include "tools/paywall/gallery/Showcase.h"
#include "tools/paywall/output/Names.h"
#include "tools/paywall/screens/Screens.h"
#include "tools/paywall/stage/Languages.h"

#include <array>
#include <fmt/format.h>

namespace trelundo::paywall {

namespace {

constexpr std::array usualDevices{"phone-320x568", "phone-375x667",   "phone-390x844",
                                  "phone-430x932", "tablet-820x1180", "tablet-1024x1366"};

/// The lists with their defaults filled in.
GalleryChoice completed(GalleryChoice choice) {
    if (choice.screens.empty())
        for (auto const& screen : screens()) choice.screens.push_back(screen.name);
    if (choice.devices.empty())
        for (auto const* name : usualDevices) choice.devices.push_back(DeviceProfile::find(name));
    if (choice.languages.empty()) choice.languages = languages();
    if (choice.appearances.empty()) choice.appearances.push_back(UIUserInterfaceStyle::light);
    return choice;
}

/// Letters, digits, hyphens and underscores stay; everything else is spelled in hexadecimal, so that names
/// stay distinct and inside their folder.
std::string fileWord(std::string const& text) {
    std::string word;
    for (char const c : text) {
        bool const isPlain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
        word += isPlain || c == '-' || c == '_' ? std::string{c}
                                                : fmt::format("~{:02x}", static_cast<unsigned char>(c));
    }
    return word;
}

std::string fileName(Options const& scene) {
    auto name =
        fmt::format("{}/{}{}.{}.{}", scene.screen, scene.device->name, scene.landscape ? "-landscape" : "",
                    fileWord(scene.language), nameOf(scene.appearance));
    if (!scene.abTest.empty()) name += "." + fileWord(scene.abTest);
    return name + ".png";
}

std::string shellQuoted(std::string const& text) {
    std::string quoted = "'";
    for (char const c : text) quoted += c == '\'' ? std::string{"'\\''"} : std::string{c};
    return quoted + "'";
}

} // namespace

std::vector<GalleryPicture> planGallery(Options const& options, StoreConfiguration const& catalogue) {
    auto const choice = completed(options.gallery);
    std::vector<GalleryPicture> pictures;
    auto scene = options;
    for (auto const& screen : choice.screens) {
        scene.screen = screen;
        scene.select = 0;
        scene.discounts.clear();
        chooseProduct(scene, catalogue);
        for (auto const& tag : showcaseTags(screen, choice.tags))
            for (auto const appearance : choice.appearances)
                for (auto const* device : choice.devices)
                    for (auto const& language : choice.languages) {
                        scene.abTest = tag;
                        scene.appearance = appearance;
                        scene.device = device;
                        scene.language = language;
                        pictures.push_back({scene, fileName(scene)});
                    }
    }
    return pictures;
}

std::string renderCommand(Options const& scene) {
    auto command = fmt::format("paywall render {} --device {} --language {}", scene.screen,
                               scene.device->name, scene.language);
    if (scene.landscape) command += " --landscape";
    if (scene.appearance == UIUserInterfaceStyle::dark) command += " --appearance dark";
    if (!scene.abTest.empty()) command += " --ab-test " + shellQuoted(scene.abTest);
    if (scene.catalogue) command += " --catalogue " + shellQuoted(*scene.catalogue);
    if (scene.products)
        command += " --products " + shellQuoted(fmt::format("{}", fmt::join(*scene.products, ",")));
    if (scene.select != 0) command += fmt::format(" --select {}", scene.select);
    for (auto const& [product, offer] : scene.discounts)
        command += " --discount " + shellQuoted(product + "=" + offer);
    for (auto const& folder : scene.pictureFolders) command += " --pictures " + shellQuoted(folder);
    return command + " --out FILE.png";
}

} // namespace trelundo::paywall
