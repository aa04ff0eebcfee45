#pragma once

#include "trelundo/platform/graphics/internal/BoxBlur.h"

#include <QImage>

namespace trelundo {

/// Averages squares of `reduction` pixels of a premultiplied image; those at the right and bottom may be cut.
/// Keeps the last `channels` of blue, green, red and alpha, with `margin` empty pixels around.
BlurBuffer downsampled(QImage const& image, QRect const& area, int reduction, int margin, int channels);

} // namespace trelundo
