#pragma once

#include "trelundo/platform/coreanimation/internal/DisplayList.h"
#include "trelundo/platform/graphics/Canvas.h"
#include "trelundo/platform/graphics/Surface.h"

#include <cstdint>
#include <memory>

namespace trelundo {

/// Pixels kept for one part of a layer. They are made when they are first painted, from what the latest frame
/// said they show.
class LayerBitmap {
public:
    virtual ~LayerBitmap() = default;

    /// The area that the pixels may cover, in pixels from the layer's top left corner.
    PixelRect const& rect() const { return rect_; }
    /// Changes with the pixels.
    std::uint64_t serial() const { return serial_; }
    std::size_t bytes() const;

    /// Paints with the layer's corner at (x, y) of the canvas, which draws into `target`.
    virtual void paint(Canvas& canvas, Surface& target, int x, int y);
    /// What changed when `serial` was replaced in frame `frame`; null when that is not known.
    virtual Damage const* changesSince(std::uint64_t /*serial*/, std::uint64_t /*frame*/) const {
        return nullptr;
    }
    /// Whether the bitmap shows what lies behind it.
    virtual bool dependsOnBackdrop() const { return false; }
    /// Whether the next painting reads what lies behind, so that it must cover the whole bitmap at once.
    bool readsBackdrop() const { return dependsOnBackdrop() && !surface_; }
    virtual void discardPixels();

    std::uint64_t lastFrame = 0; // in which the bitmap was asked for

protected:
    /// Brings surface_ up to date when isRendered_ is false; it stays null when there is nothing to see.
    virtual void render() = 0;
    /// Gives the pixels to come a number of their own.
    void renewSerial();
    /// New pixels from now on, over `rect`.
    void invalidate(PixelRect const& rect, double scale);
    /// Gives back the memory around what was drawn.
    void trim();
    /// Gives surface_ transparent pixels over rect().
    void allocateSurface();
    std::unique_ptr<Surface> makeSurface() const { return makeSurface(rect_); }
    std::unique_ptr<Surface> makeSurface(PixelRect const& rect) const;

    PixelRect rect_;
    double scale_ = 1;
    std::uint64_t serial_ = 0;
    std::unique_ptr<Surface> surface_;
    int surfaceX_ = 0, surfaceY_ = 0; // of the surface's corner, in pixels from the layer's
    bool isRendered_ = false;         // with surface_ null: nothing is visible
};

} // namespace trelundo
