#include "trelundo/kit/common/Pictures.h"

#include "trelundo/kit/common/Texts.h"

namespace trelundo {

Ref<UIImage> Pictures::loadImageBundle(std::string const& name, Bundle& bundle,
                                       std::string_view /*resource*/) {
    return UIImage::named(name, bundle);
}

Ref<UIImage> Pictures::image(std::string const& name, UIImageRenderingMode mode) {
    auto const image = loadImageBundle(name, Texts::kitBundle(), "Premium");
    return image && mode != UIImageRenderingMode::automatic ? image->withRenderingMode(mode) : image;
}

} // namespace trelundo
