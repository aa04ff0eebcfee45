#include "trelundo/kit/common/Pictures.h"

#include "trelundo/kit/common/Texts.h"
#include "trelundo/platform/foundation/DispatchQueue.h"
#include "trelundo/platform/foundation/Log.h"
#include "trelundo/platform/foundation/Weak.h"

#include <set>

namespace trelundo {

Ref<UIImage> Pictures::loadImageBundle(std::string const& name, Bundle& bundle,
                                       std::string_view /*resource*/) {
    return UIImage::named(name, bundle);
}

Ref<UIImage> Pictures::hostImage(std::string const& name, NSObject& screen) {
    auto const image = name.empty() ? nullptr : UIImage::named(name);
    if (image || name.empty()) return image;
    // Later, because a screen under construction does not know its own class yet.
    DispatchQueue::main().async([name, weak = Weak<NSObject>{&screen}] {
        static auto& told = *new std::set<std::string>;
        auto const asked = weak.lock();
        if (!asked) return;
        auto const text = asked->className() + ": there is no picture \"" + name + "\" in the main bundle";
        if (told.insert(text).second) logWarning(text);
    });
    return nullptr;
}

Ref<UIImage> Pictures::image(std::string const& name, UIImageRenderingMode mode) {
    auto const image = loadImageBundle(name, Texts::kitBundle(), "Premium");
    return image && mode != UIImageRenderingMode::automatic ? image->withRenderingMode(mode) : image;
}

} // namespace trelundo
