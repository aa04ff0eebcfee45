#pragma once

#include "trelundo/platform/coreanimation/internal/LayerBitmap.h"

namespace trelundo {

/// A rounded group that shows what lies behind: it is drawn over a copy of that and then cut.
class IsolatedGroupBitmap : public LayerBitmap {
public:
    void update(DisplayList list, PixelRect const& rect, CornerRadii const& radii, std::uint64_t behind,
                double scale);
    void paint(Canvas& canvas, Surface& target, int x, int y) override;
    bool dependsOnBackdrop() const override { return true; }

protected:
    void render() override {}

private:
    DisplayList list_;
    CornerRadii radii_;
    std::uint64_t behind_ = 0;
};

} // namespace trelundo
