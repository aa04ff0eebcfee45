#include "trelundo/platform/coreanimation/internal/PictureStore.h"

#include <unordered_map>

namespace trelundo {

namespace {

constexpr std::size_t largePicture = 2u << 20; // bytes
constexpr std::size_t spareBytes = 8u << 20;   // of small pictures that may come back, such as scrolled tiles
constexpr std::uint64_t spareFrames = 240;

} // namespace

void PictureStore::endFrame() {
    std::size_t spare = 0;
    std::erase_if(pictures_, [&](auto const& entry) {
        auto const& picture = *entry.second;
        if (picture.lastFrame == frame_) return false;
        spare += picture.bytes();
        return picture.bytes() > largePicture || spare > spareBytes ||
               picture.lastFrame + spareFrames < frame_;
    });
}

std::size_t PictureStore::bytes() const {
    std::size_t sum = 0;
    for (auto const& [key, picture] : pictures_) sum += picture->bytes();
    return sum;
}

} // namespace trelundo
