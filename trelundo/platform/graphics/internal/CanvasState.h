#pragma once

#include "trelundo/platform/graphics/Canvas.h"

#include <QPainter>

#include <vector>

namespace trelundo {

struct Canvas::State {
    explicit State(Surface& target);

    Surface& surface;
    QPainter painter;
    QRect clip; // in whole device pixels, which the painter does not tell back
    std::vector<QRect> saved;
};

} // namespace trelundo
