#pragma once

#include "trelundo/platform/coreanimation/internal/LayerBitmap.h"

namespace trelundo {

/// Several items flattened into one bitmap, cut to rounded corners when there are any.
class GroupBitmap : public LayerBitmap {
public:
    void update(DisplayList list, PixelRect const& rect, CornerRadii const& radii, double scale,
                std::uint64_t frame);
    Damage const* changesSince(std::uint64_t serial, std::uint64_t frame) const override;
    void discardPixels() override;

protected:
    void render() override;

private:
    DisplayList list_;
    CornerRadii radii_;
    Damage changes_; // of the latest change
    Damage dirty_;   // of all changes since the pixels were made
    std::uint64_t previousSerial_ = 0;
    std::uint64_t changedFrame_ = 0;
};

} // namespace trelundo
