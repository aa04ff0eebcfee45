#include "trelundo/platform/uikit/views/UIImage.h"

#include "trelundo/platform/foundation/Log.h"
#include "trelundo/platform/uikit/views/UIScreen.h"
#include "trelundo/platform/uikit/views/internal/ImageSet.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <vector>

namespace trelundo {

namespace {

constexpr std::array<std::string_view, 4> extensions{".svg", ".png", ".jpg", ".jpeg"};

/// A name taken apart: "folder/check@2x.png" is stem "folder/check", scale 2, extension ".png".
struct ImageName {
    std::string stem;
    int scale = 0; // 0: not given
    std::string extension;
};

void takeExtension(ImageName& name) {
    for (auto const extension : extensions) {
        if (!name.stem.ends_with(extension)) continue;
        name.extension = extension;
        name.stem.resize(name.stem.size() - extension.size());
        return;
    }
}

void takeScale(ImageName& name) {
    for (int const scale : {2, 3}) {
        auto const suffix = '@' + std::to_string(scale) + 'x';
        if (!name.stem.ends_with(suffix)) continue;
        name.scale = scale;
        name.stem.resize(name.stem.size() - suffix.size());
        return;
    }
}

ImageName parse(std::string const& text) {
    ImageName name{.stem = text, .scale = 0, .extension = {}};
    takeExtension(name);
    takeScale(name);
    return name;
}

/// The scales to look for, the screen's own first, then from the finest down.
std::vector<int> scalesFor(ImageName const& name) {
    if (name.scale != 0) return {name.scale};
    int const own = static_cast<int>(UIScreen::main().scale());
    std::vector<int> scales{own};
    for (int const scale : {3, 2, 1})
        if (scale != own) scales.push_back(scale);
    return scales;
}

std::array<std::string_view, 2> idiomSuffixes() {
    bool const isTablet = UIScreen::main().device().idiom == UIUserInterfaceIdiom::pad;
    return {isTablet ? "~ipad" : "~iphone", ""};
}

struct Resource {
    std::string bytes;
    std::string path; // where it was found, for messages
    int scale;
    UIImageRenderingMode renderingMode = UIImageRenderingMode::automatic;
};

/// The files that may hold the picture, best first, with their scales.
std::map<std::string, int> candidates(ImageName const& name, std::vector<std::string>& order) {
    std::map<std::string, int> scales;
    for (int const scale : scalesFor(name)) {
        auto const suffix = scale == 1 ? std::string{} : '@' + std::to_string(scale) + 'x';
        for (auto const idiom : idiomSuffixes()) {
            auto const file = name.stem + suffix + std::string{idiom};
            for (auto const extension : extensions) {
                if (!name.extension.empty() && name.extension != extension) continue;
                order.push_back(file + std::string{extension});
                scales.emplace(order.back(), scale);
            }
        }
    }
    return scales;
}

void logOnce(std::string const& text) {
    static std::set<std::string> logged;
    if (logged.insert(text).second) logWarning(text);
}

std::optional<Resource> load(Bundle const& bundle, std::string const& file, int scale) {
    auto bytes = bundle.data(file);
    if (!bytes) return std::nullopt;
    return Resource{std::move(*bytes), bundle.path(file).value_or(file), scale};
}

std::string setFile(ImageName const& name) { return name.stem + ".imageset/Contents.json"; }

/// The picture that an image set has for this device. None for a broken set, which is logged.
std::optional<Resource> findInSet(Bundle const& bundle, ImageName const& name) {
    auto const contents = load(bundle, setFile(name), 1);
    if (!contents) return std::nullopt;
    auto const set = ImageSet::parse(contents->bytes, contents->path);
    if (!set) {
        logOnce(set.error().message);
        return std::nullopt;
    }
    auto const& screen = UIScreen::main();
    auto const* slot = set->best(screen.device().idiom, static_cast<int>(screen.scale()));
    if (!slot) return std::nullopt;
    auto resource = load(bundle, name.stem + ".imageset/" + slot->file, std::max(slot->scale, 1));
    if (!resource) {
        logOnce(contents->path + ": there is no file \"" + slot->file + "\"");
        return std::nullopt;
    }
    resource->renderingMode = set->renderingMode();
    return resource;
}

std::optional<Resource> find(Bundle const& bundle, ImageName const& name) {
    std::vector<std::string> order;
    auto const scales = candidates(name, order);
    bool const isPlain = name.scale == 0 && name.extension.empty();
    // Asked together, so that a loose file below a folder beats a set that is compiled in.
    auto names = order;
    if (isPlain) names.insert(names.begin(), setFile(name));
    auto file = bundle.firstOf(names);
    if (isPlain && file == names.front()) {
        if (auto resource = findInSet(bundle, name)) return resource;
        file = bundle.firstOf(order);
    }
    return file ? load(bundle, *file, scales.at(*file)) : std::nullopt;
}

/// Why `name` may not be looked up; none when it may.
std::optional<std::string> refusal(std::string const& name) {
    if (name.empty()) return "A picture was asked for by an empty name.";
    bool const leavesBundle = name.find("..") != std::string::npos || name.front() == '/';
    if (!leavesBundle && name.find('\0') == std::string::npos) return std::nullopt;
    return "The picture name \"" + name.substr(0, name.find('\0')) + "\" was refused: it leaves its bundle.";
}

Ref<UIImage> decode(Resource const& resource, std::string const& name) {
    auto picture = Picture::decode(resource.bytes, resource.path, resource.scale);
    if (picture) return make<UIImage>(*std::move(picture), name)->withRenderingMode(resource.renderingMode);
    logOnce(picture.error().message);
    return nullptr;
}

/// Pictures by place, name and content, so that a file that a bundle gains or replaces is seen. A broken one
/// stays as null, which keeps its log line from coming again.
Ref<UIImage> cached(Resource const& resource, std::string const& name) {
    static std::map<std::string, Ref<UIImage>, std::less<>> images;
    auto const key = resource.path + '\0' + name + '\0' +
                     std::to_string(static_cast<int>(resource.renderingMode)) + '\0' +
                     std::to_string(std::hash<std::string>{}(resource.bytes));
    if (auto const known = images.find(key); known != images.end()) return known->second;
    return images.emplace(key, decode(resource, name)).first->second;
}

} // namespace

Ref<UIImage> UIImage::named(std::string const& name) { return named(name, Bundle::main()); }

Ref<UIImage> UIImage::named(std::string const& name, Bundle& bundle) {
    if (auto const reason = refusal(name)) {
        logOnce(*reason);
        return nullptr;
    }
    auto const resource = find(bundle, parse(name));
    return resource ? cached(*resource, name) : nullptr;
}

UIImage::UIImage(Ref<Picture> picture, std::string name)
    : picture_(std::move(picture))
    , name_(std::move(name)) {}

Ref<UIImage> UIImage::copy() const {
    auto image = make<UIImage>(picture_, name_);
    image->renderingMode_ = renderingMode_;
    image->flips_ = flips_;
    return image;
}

Ref<UIImage> UIImage::withRenderingMode(UIImageRenderingMode mode) const {
    auto image = copy();
    image->renderingMode_ = mode;
    return image;
}

Ref<UIImage> UIImage::imageFlippedForRightToLeftLayoutDirection() const {
    auto image = copy();
    image->flips_ = true;
    return image;
}

} // namespace trelundo
