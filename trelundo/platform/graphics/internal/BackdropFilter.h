#pragma once

#include "trelundo/platform/graphics/CGColor.h"

#include <QBrush>
#include <QImage>

namespace trelundo {

/// What is done to the pixels behind something translucent.
struct BackdropFilter {
    /// Paints in place the filtered pixels of `area`, which lies inside `image`.
    QBrush brush(QImage const& image, QRect const& area) const;

    double deviation;  // pixels, of the Gaussian that the blur comes close to
    double saturation; // 1: as it is
    CGColor overlay;
};

} // namespace trelundo
