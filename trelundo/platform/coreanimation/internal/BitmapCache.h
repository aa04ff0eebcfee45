#pragma once

#include "trelundo/platform/coreanimation/internal/LayerBitmap.h"

#include <memory>
#include <unordered_map>

namespace trelundo {

/// All kept bitmaps of a compositor, found by layer and part. Those that no frame asks for go after a while,
/// large ones at once.
class BitmapCache {
public:
    std::uint64_t frame() const { return frame_; }
    void beginFrame() { ++frame_; }
    void endFrame();

    /// The bitmap with that key; always asked for with the same class.
    template <class Bitmap> Bitmap& get(std::uint64_t key) {
        auto& bitmap = bitmaps_[key];
        if (!bitmap) bitmap = std::make_unique<Bitmap>();
        bitmap->lastFrame = frame_;
        return static_cast<Bitmap&>(*bitmap);
    }

private:
    std::unordered_map<std::uint64_t, std::unique_ptr<LayerBitmap>> bitmaps_;
    std::uint64_t frame_ = 0;
};

} // namespace trelundo
