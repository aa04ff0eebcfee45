#pragma once

#include "trelundo/platform/coreanimation/CALayer.h"
#include "trelundo/platform/coreanimation/internal/LayerBitmap.h"

namespace trelundo {

/// What lies behind a layer, blurred.
class BackdropBitmap : public LayerBitmap {
public:
    struct Parameters {
        CALayer::BackdropEffect effect;
        CornerRadii radii;
        PixelRect shape;
        PixelRect visible;
        std::uint64_t behind = 0; // signature
        bool operator==(Parameters const&) const = default;
    };
    void update(Parameters const& parameters, double scale);
    void paint(Canvas& canvas, Surface& target, int x, int y) override;
    bool dependsOnBackdrop() const override { return true; }

protected:
    void render() override {}

private:
    Parameters parameters_{};
};

} // namespace trelundo
