#pragma once

#include "trelundo/platform/graphics/Canvas.h"
#include "trelundo/platform/graphics/Surface.h"
#include "trelundo/platform/graphics/text/TextLayout.h"

#include <cstring>
#include <functional>
#include <memory>

namespace trelundo::test {

inline constexpr CGColor red{1, 0, 0, 1};
inline constexpr CGColor green{0, 1, 0, 1};
inline constexpr CGColor blue{0, 0, 1, 1};
inline constexpr CGColor white{1, 1, 1, 1};
inline constexpr CGColor black{0, 0, 0, 1};
inline constexpr CGColor clear{0, 0, 0, 0};

/// A surface of `width` by `height` points with what `draw` puts there.
inline std::unique_ptr<Surface> drawn(int width, int height, double scale,
                                      std::function<void(Canvas&)> const& draw) {
    auto surface =
        std::make_unique<Surface>(static_cast<int>(width * scale), static_cast<int>(height * scale), scale);
    Canvas canvas(*surface);
    draw(canvas);
    return surface;
}

/// A run of black text.
inline TextRun run(std::string text, double size = 20, int weight = 400) {
    TextRun result;
    result.text = std::move(text);
    result.font = {.size = size, .weight = weight};
    result.color = black;
    return result;
}

inline int alphaAt(Surface const& surface, int x, int y) {
    return static_cast<int>(surface.pixel(x, y) >> 24);
}

inline bool sameBytes(Surface const& a, Surface const& b) {
    return a.pixelWidth() == b.pixelWidth() && a.pixelHeight() == b.pixelHeight() &&
           std::memcmp(a.bytes(), b.bytes(),
                       static_cast<std::size_t>(a.bytesPerLine()) *
                           static_cast<std::size_t>(a.pixelHeight())) == 0;
}

} // namespace trelundo::test
