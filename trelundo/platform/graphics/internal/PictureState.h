#pragma once

#include "trelundo/platform/graphics/CGColor.h"
#include "trelundo/platform/graphics/Picture.h"
#include "trelundo/platform/graphics/internal/PictureDecoder.h"

#include <cstdint>
#include <optional>

namespace trelundo {

struct Picture::State {
    /// The picture stretched to a size in pixels, kept for the next time. With `tint` its alpha in that
    /// colour. Null for an empty size and when memory does not hold it.
    QImage rendition(int width, int height, std::optional<CGColor> const& tint) const;

    std::uint64_t identity; // of the picture, among the kept renditions
    DecodedPicture content;
};

} // namespace trelundo
