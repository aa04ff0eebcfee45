#include "trelundo/platform/graphics/CGColor.h"

#include "trelundo/platform/graphics/internal/ColorBytes.h"

#include <cmath>

namespace trelundo {

std::uint8_t colorByte(double component) {
    // Written so that NaN counts as 0.
    if (!(component > 0)) return 0;
    return component >= 1 ? 255 : static_cast<std::uint8_t>(std::lround(component * 255));
}

std::string CGColor::hexText() const {
    constexpr auto digits = "0123456789abcdef";
    std::string text = "#";
    for (auto const component : {red, green, blue, alpha}) {
        auto const byte = colorByte(component);
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

} // namespace trelundo
