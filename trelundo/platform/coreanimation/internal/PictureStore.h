#pragma once

#include "trelundo/platform/coreanimation/internal/LayerPicture.h"

#include <memory>
#include <unordered_map>

namespace trelundo {

/// The parts of a layer that a display list tells apart. Borders without rounding take four numbers.
enum class LayerPart : std::uint64_t {
    shadow,
    backdrop,
    background,
    contents,
    border,
    topBorder,
    leftBorder,
    bottomBorder,
    rightBorder,
    cut,
    isolated,
    faded,
    transformed,
};

inline std::uint64_t displayKey(CALayer const& layer, LayerPart part) {
    return layer.identity() * 16 + static_cast<std::uint64_t>(part);
}

/// All kept pictures of a compositor, found by layer and part. Those that no frame asks for go after a while,
/// large ones at once.
class PictureStore {
public:
    std::uint64_t frame() const { return frame_; }
    void beginFrame() { ++frame_; }
    void endFrame();
    void clear() { pictures_.clear(); }
    std::size_t bytes() const;

    /// The picture with that key; always asked for with the same class.
    template <class Picture> Picture& get(std::uint64_t key) {
        auto& picture = pictures_[key];
        if (!picture) picture = std::make_unique<Picture>();
        picture->lastFrame = frame_;
        return static_cast<Picture&>(*picture);
    }

private:
    std::unordered_map<std::uint64_t, std::unique_ptr<LayerPicture>> pictures_;
    std::uint64_t frame_ = 0;
};

} // namespace trelundo
