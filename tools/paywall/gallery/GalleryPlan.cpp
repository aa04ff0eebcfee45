#include "tools/paywall/gallery/GalleryPlan.h"

#include "tools/paywall/gallery/SampleSelection.h"
#include "tools/paywall/output/Names.h"
#include "tools/paywall/screens/Screens.h"
#include "tools/paywall/session/Languages.h"

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

std::string fileName(Options const& options) {
    auto name = fmt::format("{}/{}{}.{}.{}", options.screen, options.device->name,
                            options.isLandscape ? "-landscape" : "", fileWord(options.language),
                            nameOf(options.appearance));
    if (!options.abTest.empty()) name += "." + fileWord(options.abTest);
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
    auto shown = options;
    for (auto const& screen : choice.screens) {
        shown.screen = screen;
        shown.select = 0;
        shown.discounts.clear();
        selectSampleProduct(shown, catalogue);
        for (auto const& tag : sampleTags(screen, choice.tags))
            for (auto const appearance : choice.appearances)
                for (auto const* device : choice.devices)
                    for (auto const& language : choice.languages) {
                        shown.abTest = tag;
                        shown.appearance = appearance;
                        shown.device = device;
                        shown.language = language;
                        pictures.push_back({shown, fileName(shown)});
                    }
    }
    return pictures;
}

std::string renderCommand(Options const& options) {
    auto command = fmt::format("paywall render {} --device {} --language {}", options.screen,
                               options.device->name, options.language);
    if (options.isLandscape) command += " --landscape";
    if (options.appearance == UIUserInterfaceStyle::dark) command += " --appearance dark";
    if (!options.abTest.empty()) command += " --ab-test " + shellQuoted(options.abTest);
    if (options.catalogue) command += " --catalogue " + shellQuoted(*options.catalogue);
    if (options.products)
        command += " --products " + shellQuoted(fmt::format("{}", fmt::join(*options.products, ",")));
    if (options.select != 0) command += fmt::format(" --select {}", options.select);
    for (auto const& [product, offer] : options.discounts)
        command += " --discount " + shellQuoted(fmt::format("{}={}", product, offer));
    for (auto const& folder : options.pictureFolders) command += " --pictures " + shellQuoted(folder);
    return command + " --out FILE.png";
}

} // namespace trelundo::paywall
