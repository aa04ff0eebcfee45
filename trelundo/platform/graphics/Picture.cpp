#include "trelundo/platform/graphics/Picture.h"

#include "trelundo/platform/graphics/internal/GraphicsSystem.h"
#include "trelundo/platform/graphics/internal/PictureState.h"
#include "trelundo/platform/graphics/internal/RenditionCache.h"

#include <cmath>

namespace trelundo {

namespace {

std::uint64_t nextIdentity() {
    static std::uint64_t last = 0;
    return ++last;
}

CGSize sizeInPoints(DecodedPicture const& content, double scale) {
    if (content.artwork) return {content.artworkSize.width(), content.artworkSize.height()};
    return {content.pixels.width() / scale, content.pixels.height() / scale};
}

} // namespace

Result<Ref<Picture>> Picture::decode(std::string_view bytes, std::string const& name, double scale) {
    startGraphics();
    if (!(scale > 0) || !std::isfinite(scale)) scale = 1;
    auto content = decodePicture(bytes, name);
    if (!content) return content.error();
    auto const size = sizeInPoints(*content, scale);
    auto state = std::make_unique<State>(State{nextIdentity(), std::move(*content)});
    return make<Picture>(std::move(state), size, scale);
}

Picture::Picture(std::unique_ptr<State> state, CGSize size, double scale)
    : state_(std::move(state))
    , size_(size)
    , scale_(scale) {}

Picture::~Picture() { RenditionCache::shared().removePicture(state_->identity); }

} // namespace trelundo
