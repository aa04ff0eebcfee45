#pragma once

#include <cstdint>
#include <vector>

namespace trelundo {

/// Bytes of `channels` interleaved channels a pixel.
struct BlurBuffer {
    BlurBuffer(int w, int h, int c);
    std::uint8_t* row(int y) { return bytes.data() + static_cast<std::size_t>(y) * rowSize(); }
    std::uint8_t const* row(int y) const { return bytes.data() + static_cast<std::size_t>(y) * rowSize(); }
    std::size_t rowSize() const {
        return static_cast<std::size_t>(width) * static_cast<std::size_t>(channels);
    }

    int width;
    int height;
    int channels;
    std::vector<std::uint8_t> bytes;
};

inline constexpr double largestDeviation = 1000; // pixels

/// How many pixels a side to merge into one before blurring with `deviation` pixels, so that the blur stays
/// cheap and the merging cannot be seen.
int blurReduction(double deviation);

/// Approximates a Gaussian by three box passes each way. Beyond the edges the edge pixels continue; an even
/// area stays exactly what it is.
void boxBlur(BlurBuffer& buffer, double deviation);

} // namespace trelundo
