#pragma once

#include "trelundo/platform/coreanimation/internal/LayerBitmap.h"

namespace trelundo {

/// A list of items seen through a transform about a point.
class TransformedBitmap : public LayerBitmap {
public:
    struct Parameters {
        CGAffineTransform linear;        // without translation
        double anchorX = 0, anchorY = 0; // pixels from the layer's corner
        PixelRect source;
        PixelRect rect; // pixels from the anchor
        bool operator==(Parameters const&) const = default;
    };
    void update(DisplayList list, Parameters const& parameters, double scale);

protected:
    void render() override;

private:
    DisplayList list_;
    Parameters parameters_;
};

} // namespace trelundo
