#pragma once

#include "tools/paywall/gallery/GalleryPlan.h"
#include "tools/paywall/output/Json.h"

#include <filesystem>

namespace trelundo::paywall {

/// Draws the picture and its preview (one pixel a point) below `folder` and gives its flaggedTexts(). Files
/// that cannot be written throw a Failure.
Json drawPicture(GalleryPicture const& picture, StoreConfiguration const& catalogue,
                 std::filesystem::path const& folder);

/// The texts of a described view tree that did not fit: `view`, `text`, `frame` in points, and what applies
/// of `shrunkTo` (the scale), `truncated` and `offScreen` (reaches beyond the screen and does not scroll).
/// Hidden and fully transparent views and those scrolled away do not count. A view without a name goes by the
/// nearest named view around it and its own class.
Json flaggedTexts(Json const& description);

} // namespace trelundo::paywall
