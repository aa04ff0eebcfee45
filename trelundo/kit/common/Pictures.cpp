#include "trelundo/kit/common/Pictures.h"

#include "trelundo/kit/common/Texts.h"

namespace trelundo {

Ref<UIImage> Pictures::loadImageBundle(std::string const& name, Bundle& bundle,
                                       std::string_view /*resource*/) {
    return UIImage::named(name, bundle);
}

Ref<UIImage> Pictures::image(std::string const& name) {
    return loadImageBundle(name, Texts::kitBundle(), "Premium");
}

} // namespace trelundo
