#include "tools/paywall/gallery/GalleryFolder.h"

#include "tools/paywall/Failure.h"
#include "tools/paywall/output/MakeFolder.h"
#include "trelundo/platform/foundation/FileContents.h"

#include <fstream>

namespace trelundo::paywall {

namespace fs = std::filesystem;

namespace {

constexpr int manifestFormat = 1;
constexpr auto manifestName = "gallery.json";

/// Zero when there is no such file.
std::uintmax_t sizeOf(fs::path const& file) {
    std::error_code error;
    auto const size = fs::file_size(file, error);
    return error ? 0 : size;
}

/// Whether a manifest's name stays below the folders of pictures, whoever wrote it.
bool isPictureName(fs::path const& file) {
    return file.is_relative() && file.extension() == ".png" && file == file.lexically_normal() &&
           *file.begin() != "..";
}

Json toJson(GalleryFolder::Entry const& entry) {
    return {{"key", entry.key},
            {"pictureBytes", entry.pictureBytes},
            {"previewBytes", entry.previewBytes},
            {"flags", entry.flags}};
}

GalleryFolder::Entry toEntry(Json const& json) {
    return {.key = json.at("key"),
            .pictureBytes = json.at("pictureBytes"),
            .previewBytes = json.at("previewBytes"),
            .flags = json.at("flags")};
}

} // namespace

GalleryFolder::GalleryFolder(fs::path path)
    : path_(std::move(path)) {}

GalleryFolder::Changes GalleryFolder::open(std::vector<GalleryPicture> const& plan, Keys const& keys) {
    makeFolder(path_);
    readManifest();
    refuseForeign(plan);
    Changes changes{.pending = {}, .removed = removeStale(keys)};
    for (std::size_t i = 0; i < plan.size(); ++i) {
        if (isCurrent(plan[i], keys.at(plan[i].file))) continue;
        entries_[plan[i].file] = {};
        changes.pending.push_back(i);
    }
    save();
    makeFolders(plan);
    return changes;
}

void GalleryFolder::readManifest() {
    std::ifstream file{path_ / manifestName, std::ios::binary};
    if (!file) return;
    try {
        auto const json = Json::parse(file);
        if (json.at("format") != manifestFormat) throw std::runtime_error("unknown format");
        for (auto const& [name, entry] : json.at("pictures").items()) {
            if (!isPictureName(name)) throw std::runtime_error("unexpected name " + name);
            entries_[name] = toEntry(entry);
        }
        hasManifest_ = true;
    } catch (std::exception const& error) {
        failInput((path_ / manifestName).string() + ": not a gallery's manifest: " + error.what());
    }
}

void GalleryFolder::refuseForeign(std::vector<GalleryPicture> const& plan) const {
    auto const refuse = [&](fs::path const& file) {
        if (fs::symlink_status(file).type() != fs::file_type::not_found)
            failInput(file.string() + ": stands in the way and was not written by a gallery");
    };
    if (!hasManifest_) refuse(pagePath());
    for (auto const& picture : plan) {
        if (entries_.contains(picture.file)) continue;
        refuse(path_ / picture.picturePath());
        refuse(path_ / picture.previewPath());
    }
}

std::size_t GalleryFolder::removeStale(Keys const& keys) {
    return std::erase_if(entries_, [&](auto const& named) {
        auto const& [name, entry] = named;
        if (keys.contains(name)) return false;
        for (auto const* kind : {"pictures", "previews"}) {
            std::error_code ignored;
            auto const file = path_ / kind / name;
            fs::remove(file, ignored);
            fs::remove(file.parent_path(), ignored); // succeeds for an empty folder only
        }
        return true;
    });
}

bool GalleryFolder::isCurrent(GalleryPicture const& picture, std::string const& key) const {
    auto const known = entries_.find(picture.file);
    if (known == entries_.end() || known->second.key != key) return false;
    return sizeOf(path_ / picture.picturePath()) == known->second.pictureBytes &&
           sizeOf(path_ / picture.previewPath()) == known->second.previewBytes;
}

void GalleryFolder::makeFolders(std::vector<GalleryPicture> const& plan) const {
    for (auto const& picture : plan) {
        makeFolder((path_ / picture.picturePath()).parent_path());
        makeFolder((path_ / picture.previewPath()).parent_path());
    }
}

void GalleryFolder::record(GalleryPicture const& picture, std::string const& key, Json flags) {
    entries_[picture.file] = {.key = key,
                              .pictureBytes = sizeOf(path_ / picture.picturePath()),
                              .previewBytes = sizeOf(path_ / picture.previewPath()),
                              .flags = std::move(flags)};
}

void GalleryFolder::save() const {
    Json pictures = Json::object();
    for (auto const& [name, entry] : entries_) pictures[name] = toJson(entry);
    valueOrFail(writeFile(path_ / manifestName,
                          toText({{"format", manifestFormat}, {"pictures", std::move(pictures)}}, 1) + "\n"));
}

void GalleryFolder::writePage(std::string const& html) const { valueOrFail(writeFile(pagePath(), html)); }

} // namespace trelundo::paywall
