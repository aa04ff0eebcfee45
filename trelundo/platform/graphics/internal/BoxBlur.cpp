#include "trelundo/platform/graphics/internal/BoxBlur.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace trelundo {

namespace {

constexpr int passes = 3;
constexpr double finestDeviation = 6; // pixels, after reduction

/// Half widths of the boxes whose variances add up closest to that of the Gaussian.
std::array<int, passes> boxRadii(double deviation) {
    auto const ideal = std::sqrt(12 * deviation * deviation / passes + 1);
    auto lower = static_cast<int>(ideal);
    if (lower % 2 == 0) --lower;
    auto const low = static_cast<double>(lower);
    auto const count = std::lround(
        (12 * deviation * deviation - passes * low * low - 4 * passes * low - 3 * passes) / (-4 * low - 4));
    std::array<int, passes> radii{};
    for (int i = 0; i < passes; ++i) radii[static_cast<std::size_t>(i)] = (i < count ? lower : lower + 2) / 2;
    return radii;
}

/// Division by the box's width, rounded, as a multiplication.
class Averager {
public:
    explicit Averager(int width)
        : factor_((std::uint64_t{1} << 32) / static_cast<std::uint64_t>(width) + 1) {}
    std::uint8_t operator()(std::uint32_t sum) const {
        return static_cast<std::uint8_t>((sum * factor_ + (std::uint64_t{1} << 31)) >> 32);
    }

private:
    std::uint64_t factor_;
};

/// One pass along a line of `count` pixels whose neighbours are `step` bytes apart.
void blurLine(std::uint8_t const* in, std::uint8_t* out, int count, std::ptrdiff_t step, int radius) {
    Averager const average(2 * radius + 1);
    auto const at = [&](int i) -> std::uint32_t { return in[std::clamp(i, 0, count - 1) * step]; };
    std::uint32_t sum = 0;
    for (int i = -radius; i <= radius; ++i) sum += at(i);
    for (int i = 0; i < count; ++i) {
        out[i * step] = average(sum);
        sum += at(i + radius + 1) - at(i - radius);
    }
}

void blurRows(BlurBuffer const& in, BlurBuffer& out, int radius) {
    for (int y = 0; y < in.height; ++y)
        for (int channel = 0; channel < in.channels; ++channel)
            blurLine(in.row(y) + channel, out.row(y) + channel, in.width, in.channels, radius);
}

/// All columns at once, row by row, which the memory cache likes better than column by column.
void blurColumns(BlurBuffer const& in, BlurBuffer& out, int radius) {
    Averager const average(2 * radius + 1);
    auto const size = in.rowSize();
    auto const row = [&](int y) { return in.row(std::clamp(y, 0, in.height - 1)); };
    std::vector<std::uint32_t> sums(size, 0);
    for (int y = -radius; y <= radius; ++y)
        for (std::size_t i = 0; i < size; ++i) sums[i] += row(y)[i];
    for (int y = 0; y < in.height; ++y) {
        auto const* entering = row(y + radius + 1);
        auto const* leaving = row(y - radius);
        auto* target = out.row(y);
        for (std::size_t i = 0; i < size; ++i) {
            target[i] = average(sums[i]);
            sums[i] += entering[i];
            sums[i] -= leaving[i];
        }
    }
}

} // namespace

BlurBuffer::BlurBuffer(int w, int h, int c)
    : width(w)
    , height(h)
    , channels(c)
    , bytes(static_cast<std::size_t>(w) * static_cast<std::size_t>(h) * static_cast<std::size_t>(c)) {}

int blurReduction(double deviation) { return std::max(1, static_cast<int>(deviation / finestDeviation)); }

void boxBlur(BlurBuffer& buffer, double deviation) {
    if (!(deviation > 0) || buffer.bytes.empty()) return;
    auto other = buffer;
    for (auto const radius : boxRadii(deviation)) {
        if (radius == 0) continue;
        blurRows(buffer, other, radius);
        blurColumns(other, buffer, radius);
    }
}

} // namespace trelundo
