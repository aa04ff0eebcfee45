#pragma once

#include "trelundo/platform/foundation/Ref.h"
#include "trelundo/platform/foundation/Result.h"
#include "trelundo/platform/graphics/Geometry.h"

#include <memory>
#include <string>
#include <string_view>

namespace trelundo {

/// A decoded picture: pixels (PNG, JPEG) or scalable artwork (SVG). Immutable. Scaled renditions are cached
/// by pixel size and tint, so drawing the same picture at the same size again costs a copy.
class Picture : public NSObject {
public:
    static constexpr double maximumPixels = 16'000'000;

    /// Decodes `bytes`, never to null. Broken data, an unknown format and a picture of more than 16
    /// megapixels give an error that names `name`. A scale that is not positive counts as 1.
    static Result<Ref<Picture>> decode(std::string_view bytes, std::string const& name, double scale);
    ~Picture() override;

    /// In points: pixels divided by the scale; the view box's size for SVG.
    CGSize size() const { return size_; }
    double scale() const { return scale_; }

private:
    friend class Canvas;
    template <class T, class... A> friend Ref<T> make(A&&...);
    struct State;
    Picture(std::unique_ptr<State> state, CGSize size, double scale);

    std::unique_ptr<State> state_;
    CGSize size_;
    double scale_;
};

} // namespace trelundo
