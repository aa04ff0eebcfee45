#include "tools/paywall/gallery/GalleryPage.h"

#include "tools/paywall/output/Names.h"
#include "trelundo/platform/foundation/Bundle.h"

#include <algorithm>

namespace trelundo {
std::span<EmbeddedFile const> galleryResources();
}

namespace trelundo::paywall {

namespace {

std::string_view resource(std::string_view name) {
    return std::ranges::find(galleryResources(), name, &EmbeddedFile::path)->bytes;
}

CGSize pointsOf(Options const& options) {
    auto const points = options.device->points;
    return options.isLandscape ? CGSize{points.height, points.width} : points;
}

Json toJson(GalleryPicture const& picture, Json const& flags) {
    auto const& options = picture.options;
    auto const points = pointsOf(options);
    return {{"file", picture.file},
            {"screen", options.screen},
            {"device", options.device->name},
            {"language", options.language},
            {"tag", options.abTest},
            {"appearance", nameOf(options.appearance)},
            {"width", points.width},
            {"height", points.height},
            {"scale", options.device->scale},
            {"command", renderCommand(options)},
            {"flags", flags}};
}

/// As it may stand inside a script element: no text of a catalogue can end that.
std::string scriptText(Json const& json) {
    std::string safe;
    for (char const c : toText(json)) safe += c == '<' ? std::string{"\\u003c"} : std::string{c};
    return safe;
}

void replace(std::string& text, std::string_view mark, std::string_view content) {
    text.replace(text.find(mark), mark.size(), content);
}

} // namespace

std::string galleryPage(std::vector<GalleryPicture> const& plan, GalleryFolder const& folder) {
    Json pictures = Json::array();
    for (auto const& picture : plan) pictures.push_back(toJson(picture, folder.flags(picture)));
    std::string page{resource("page.html")};
    replace(page, "/* style */", resource("page.css"));
    replace(page, "/* script */", resource("page.js"));
    replace(page, "/* pictures */", scriptText(pictures));
    return page;
}

} // namespace trelundo::paywall
