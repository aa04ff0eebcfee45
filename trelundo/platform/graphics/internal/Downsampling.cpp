#include "trelundo/platform/graphics/internal/Downsampling.h"

#include <algorithm>

namespace trelundo {

namespace {

/// Sums of the four channels of premultiplied pixels, two to a word.
struct ChannelSums {
    void add(QRgb pixel) {
        even += (pixel & 0xff) | static_cast<std::uint64_t>(pixel & 0xff0000) << 16;
        odd += (pixel >> 8 & 0xff) | static_cast<std::uint64_t>(pixel & 0xff000000) << 8;
    }
    std::uint8_t average(int channel, std::uint32_t count) const {
        auto const pair = channel % 2 == 0 ? even : odd;
        auto const sum = static_cast<std::uint32_t>(pair >> (channel / 2 * 32));
        return static_cast<std::uint8_t>((sum + count / 2) / count);
    }

    std::uint64_t even = 0; // blue, red
    std::uint64_t odd = 0;  // green, alpha
};

/// The sums over squares of `reduction` pixels that begin at row `top`; the last one may be narrower.
std::vector<ChannelSums> cellSums(QImage const& image, QRect const& area, int top, int bottom,
                                  int reduction) {
    std::vector<ChannelSums> sums(static_cast<std::size_t>((area.width() + reduction - 1) / reduction));
    for (int y = top; y < bottom; ++y) {
        auto const* pixel = reinterpret_cast<QRgb const*>(image.constScanLine(area.y() + y)) + area.x();
        int left = area.width();
        for (auto& sum : sums) {
            auto const count = std::min(reduction, left);
            for (int i = 0; i < count; ++i) sum.add(*pixel++);
            left -= count;
        }
    }
    return sums;
}

} // namespace

BlurBuffer downsampled(QImage const& image, QRect const& area, int reduction, int margin, int channels) {
    auto const cells = [&](int length) { return (length + reduction - 1) / reduction; };
    BlurBuffer buffer(cells(area.width()) + 2 * margin, cells(area.height()) + 2 * margin, channels);
    for (int y = 0; y < cells(area.height()); ++y) {
        auto const top = y * reduction;
        auto const bottom = std::min(top + reduction, area.height());
        auto const sums = cellSums(image, area, top, bottom, reduction);
        auto* out = buffer.row(y + margin) + static_cast<std::ptrdiff_t>(margin) * channels;
        for (std::size_t x = 0; x < sums.size(); ++x) {
            auto const across = std::min(reduction, area.width() - static_cast<int>(x) * reduction);
            auto const count = static_cast<std::uint32_t>(across * (bottom - top));
            for (int channel = 4 - channels; channel < 4; ++channel) *out++ = sums[x].average(channel, count);
        }
    }
    return buffer;
}

} // namespace trelundo
