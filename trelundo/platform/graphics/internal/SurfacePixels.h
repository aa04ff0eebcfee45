#pragma once

#include "trelundo/platform/graphics/Surface.h"

#include <QImage>

namespace trelundo {

struct Surface::Pixels {
    QImage image; // premultiplied ARGB32
};

} // namespace trelundo
