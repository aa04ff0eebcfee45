#pragma once

#include "trelundo/platform/coreanimation/internal/LayerBitmap.h"

namespace trelundo {

/// The shadow that a list of items casts.
class ShadowBitmap : public LayerBitmap {
public:
    struct Parameters {
        CGColor color;
        CGSize offset;        // points
        double deviation = 0; // points
        bool operator==(Parameters const&) const = default;
    };
    void update(DisplayList list, Parameters const& parameters, double scale);

protected:
    void render() override;

private:
    DisplayList list_;
    PixelRect source_;
    Parameters parameters_;
};

} // namespace trelundo
