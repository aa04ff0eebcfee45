#pragma once

#include "platform/foundation/Bundle.h"
#include "platform/uikit/views/UIImage.h"

#include <string>
#include <string_view>

namespace trelundo {

/// Texts and pictures from a bundle's resources, shared by every screen and control.
class Common {
public:
    /// The text under `key` in the table `resource` of `bundle`; the key itself when it is missing.
    static std::string localizedString(std::string_view key, Bundle& bundle, std::string_view resource);
    /// The picture `name` among the resources of `bundle`; null when it is missing. Pictures are not divided
    /// by `resource`: a bundle keeps them in one place.
    static Ref<UIImage> loadImageBundle(std::string const& name, Bundle& bundle, std::string_view resource);

    /// The kit's own bundle, compiled into the library.
    static Bundle& kitBundle();
    /// localizedString() with the kit's bundle and the table "Premium".
    static std::string text(std::string_view key);
    /// loadImageBundle() with the kit's bundle and the resource "Premium".
    static Ref<UIImage> image(std::string const& name);
};

} // namespace trelundo
