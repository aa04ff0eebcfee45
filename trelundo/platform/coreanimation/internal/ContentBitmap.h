#pragma once

#include "trelundo/platform/coreanimation/CALayer.h"
#include "trelundo/platform/coreanimation/internal/LayerBitmap.h"

namespace trelundo {

/// Background, contents or border of one layer alone.
class ContentBitmap : public LayerBitmap {
public:
    struct Parameters {
        CALayer* layer = nullptr; // not compared: the key tells layers apart
        bool hasContents = false;
        bool isDirect = false; // not kept: drawn anew at every painting
        std::uint64_t version = 0;
        CGRect bounds;    // as assigned: what the contents are drawn for
        CGSize shownSize; // as shown now, points
        PixelRect shape;  // of the layer
        PixelRect rect;   // of everything
        std::optional<CGColor> background;
        double borderWidth = 0; // points
        CGColor borderColor;
        CornerRadii radii;
        double scale = 1;

        bool drawsLike(Parameters const& other) const;
    };
    void update(Parameters const& parameters);
    void paint(Canvas& canvas, Surface& target, int x, int y) override;

protected:
    void render() override;

private:
    void draw(Canvas& canvas) const;
    Parameters parameters_;
};

} // namespace trelundo
