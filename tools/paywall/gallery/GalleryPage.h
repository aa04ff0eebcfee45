#pragma once

#include "tools/paywall/gallery/GalleryFolder.h"

namespace trelundo::paywall {

/// The page that shows the pictures of `plan`: one file that needs nothing but the pictures beside it.
std::string galleryPage(std::vector<GalleryPicture> const& plan, GalleryFolder const& folder);

} // namespace trelundo::paywall
