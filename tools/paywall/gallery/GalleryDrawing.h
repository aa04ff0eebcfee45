#pragma once

#include "tools/paywall/EventLog.h"
#include "tools/paywall/gallery/GalleryPlan.h"

#include <filesystem>

namespace trelundo::paywall {

/// Draws the picture and its preview (one pixel a point) below `folder`. Gives the texts that were shrunk or
/// cut: `view`, `text`, `frame` in points, `truncated`, and `shrunkTo` where it applies. Files that cannot be
/// written throw a Failure.
Json drawPicture(GalleryPicture const& picture, StoreConfiguration const& catalogue,
                 std::filesystem::path const& folder);

/// The same texts of any described view tree. Hidden and fully transparent views and those off the screen do
/// not count. A view without a name goes by the nearest named view around it and its own class.
Json flaggedTexts(Json const& description);

} // namespace trelundo::paywall
