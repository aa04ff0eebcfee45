#pragma once

#include "trelundo/platform/foundation/Result.h"

#include <QImage>
#include <QSizeF>

#include <memory>
#include <string>
#include <string_view>

class QSvgRenderer;

namespace trelundo {

/// Pixels (RGB32 when opaque, else premultiplied ARGB32) or artwork, never both.
struct DecodedPicture {
    DecodedPicture();
    ~DecodedPicture();
    DecodedPicture(DecodedPicture&&) noexcept;
    DecodedPicture& operator=(DecodedPicture&&) noexcept;

    QImage pixels;
    std::unique_ptr<QSvgRenderer> artwork;
    QSizeF artworkSize; // points: its width and height, or its view box where it states none
};

/// Recognises the format by its first bytes. The error names `name`.
Result<DecodedPicture> decodePicture(std::string_view bytes, std::string const& name);

} // namespace trelundo
