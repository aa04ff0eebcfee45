#pragma once

#include "trelundo/platform/foundation/Bundle.h"
#include "trelundo/platform/graphics/Picture.h"
#include "trelundo/platform/uikit/views/UIImageRenderingMode.h"

#include <string>

namespace trelundo {

/// A picture as views show it. Immutable; withRenderingMode gives another one.
class UIImage : public NSObject {
public:
    /// Looks in `bundle` for the image set "NAME.imageset", whose "Contents.json" may also set the rendering
    /// mode, then for loose files: the name with the suffixes of the screen's scale, then "@3x", "@2x" and
    /// none, each with the device's idiom ("~ipad") and without, and the extensions .svg, .png and .jpg
    /// unless the name has one. Null when nothing is found. A broken or oversized file, an empty name and one
    /// that leaves the bundle ("..", a leading slash, a NUL) give null with one log line; a broken image set
    /// is logged and passed over. Results are kept by bundle and name.
    static Ref<UIImage> named(std::string const& name);
    static Ref<UIImage> named(std::string const& name, Bundle& bundle);
    explicit UIImage(Ref<Picture> picture, std::string name = {});

    CGSize size() const { return picture_->size(); }
    double scale() const { return picture_->scale(); }
    std::string const& name() const { return name_; }
    Picture const& picture() const { return *picture_; }
    UIImageRenderingMode renderingMode() const { return renderingMode_; }
    Ref<UIImage> withRenderingMode(UIImageRenderingMode mode) const;
    bool flipsForRightToLeftLayoutDirection() const { return flips_; }
    Ref<UIImage> imageFlippedForRightToLeftLayoutDirection() const;

private:
    Ref<UIImage> copy() const;

    Ref<Picture> picture_;
    std::string name_;
    UIImageRenderingMode renderingMode_ = UIImageRenderingMode::automatic;
    bool flips_ = false;
};

} // namespace trelundo
