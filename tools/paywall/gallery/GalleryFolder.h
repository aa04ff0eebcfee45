#pragma once

#include "tools/paywall/gallery/GalleryPlan.h"
#include "tools/paywall/output/Json.h"

#include <filesystem>
#include <map>
#include <string>

namespace trelundo::paywall {

/// A gallery's folder and its manifest `gallery.json`, which tells what an earlier run wrote there. Nothing
/// else in the folder is ever replaced or removed. Plan with open(), take up pictures with record(), end with
/// writePage(). Everything throws a Failure that names the file when it cannot be done.
class GalleryFolder {
public:
    struct Entry {
        std::string key; // empty: begun and not finished
        std::uintmax_t pictureBytes = 0;
        std::uintmax_t previewBytes = 0;
        Json flags = Json::array(); // texts that did not fit
    };
    using Keys = std::map<std::string, std::string>; // by file

    struct Changes {
        std::vector<std::size_t> pending; // positions in the plan
        std::size_t removed = 0;
    };

    explicit GalleryFolder(std::filesystem::path path);

    /// Makes the folder if needed, removes what earlier runs wrote and the plan does not hold, and finds what
    /// is to be drawn. A file that is in the way and was not written by a gallery is a Failure.
    Changes open(std::vector<GalleryPicture> const& plan, Keys const& keys);
    /// Takes up a picture whose files are written.
    void record(GalleryPicture const& picture, std::string const& key, Json flags);
    /// Writes the manifest: what was recorded so far survives whatever comes.
    void save() const;
    void writePage(std::string const& html) const;

    std::filesystem::path const& path() const { return path_; }
    std::filesystem::path pagePath() const { return path_ / "index.html"; }
    Json const& flags(GalleryPicture const& picture) const { return entries_.at(picture.file).flags; }

private:
    void readManifest();
    void refuseForeign(std::vector<GalleryPicture> const& plan) const;
    std::size_t removeStale(Keys const& keys);
    bool isCurrent(GalleryPicture const& picture, std::string const& key) const;
    void makeFolders(std::vector<GalleryPicture> const& plan) const;

    std::filesystem::path path_;
    std::map<std::string, Entry> entries_; // by file
    bool hasManifest_ = false;
};

} // namespace trelundo::paywall
