#pragma once

#include "trelundo/platform/foundation/Bundle.h"
#include "trelundo/platform/uikit/views/UIImage.h"

#include <string>
#include <string_view>

namespace trelundo {

/// Pictures from a bundle's resources, shared by every screen and control.
class Pictures {
public:
    /// The picture `name` among the resources of `bundle`; null when it is missing. Pictures are not divided
    /// by `resource`: a bundle keeps them in one place.
    static Ref<UIImage> loadImageBundle(std::string const& name, Bundle& bundle, std::string_view resource);

    /// The host's picture `name` from the main bundle for `screen`; null when it is missing, which is told in
    /// the log once for each screen class and name. An empty name is no picture.
    static Ref<UIImage> hostImage(std::string const& name, NSObject& screen);

    /// loadImageBundle() with the kit's bundle and the resource "Premium", shown in `mode`.
    static Ref<UIImage> image(std::string const& name,
                              UIImageRenderingMode mode = UIImageRenderingMode::automatic);
};

} // namespace trelundo
