#pragma once

#include "tools/paywall/Options.h"
#include "trelundo/platform/storekit/sandbox/StoreConfiguration.h"

namespace trelundo::paywall {

/// One picture of a gallery: what it shows, and its file.
struct GalleryPicture {
    Options options;
    /// Relative to the folders of pictures and previews: "OfferViewController/phone-320x568.ar.light.png".
    std::string file;

    std::string picturePath() const { return "pictures/" + file; }
    std::string previewPath() const { return "previews/" + file; }
};

/// Every combination that the options ask for: by screen, tag, appearance, device and language.
std::vector<GalleryPicture> planGallery(Options const& options, StoreConfiguration const& catalogue);

/// The command line that draws the same picture, with FILE.png for the file.
std::string renderCommand(Options const& options);

} // namespace trelundo::paywall
