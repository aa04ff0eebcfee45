#include "trelundo/platform/coreanimation/internal/BitmapCache.h"

namespace trelundo {

namespace {

constexpr std::size_t largeBitmap = 2u << 20; // bytes
constexpr std::size_t spareBytes = 8u << 20;  // of small bitmaps that may come back, such as scrolled tiles
constexpr std::uint64_t spareFrames = 240;

} // namespace

void BitmapCache::endFrame() {
    std::size_t spare = 0;
    std::erase_if(bitmaps_, [&](auto const& entry) {
        auto const& bitmap = *entry.second;
        if (bitmap.lastFrame == frame_) return false;
        spare += bitmap.bytes();
        return bitmap.bytes() > largeBitmap || spare > spareBytes || bitmap.lastFrame + spareFrames < frame_;
    });
}

} // namespace trelundo
