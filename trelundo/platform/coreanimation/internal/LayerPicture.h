#pragma once

#include "trelundo/platform/coreanimation/CALayer.h"
#include "trelundo/platform/coreanimation/internal/DisplayList.h"
#include "trelundo/platform/graphics/Surface.h"

#include <memory>

namespace trelundo {

/// Pixels kept for one part of a layer. They are made when they are first painted, from what the latest frame
/// said they show.
class LayerPicture {
public:
    virtual ~LayerPicture() = default;

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
    /// Whether the picture shows what lies behind it.
    virtual bool isLive() const { return false; }
    /// Whether the next painting reads what lies behind, so that it must cover the whole picture at once.
    bool readsTarget() const { return isLive() && !surface_; }
    virtual void dropPixels();

    std::uint64_t lastFrame = 0; // in which the picture was asked for

protected:
    /// Brings surface_ up to date when prepared_ is false; it stays null when there is nothing to see.
    virtual void prepare() = 0;
    /// New pixels from now on, over `rect`.
    void renew(PixelRect const& rect, double scale);
    /// Gives back the memory around what was drawn.
    void crop();
    /// Gives surface_ transparent pixels over rect().
    void beginPixels();
    std::unique_ptr<Surface> blank() const { return blank(rect_); }
    std::unique_ptr<Surface> blank(PixelRect const& rect) const;

    PixelRect rect_;
    double scale_ = 1;
    std::uint64_t serial_ = 0;
    std::unique_ptr<Surface> surface_;
    int surfaceX_ = 0, surfaceY_ = 0; // of the surface's corner, in pixels from the layer's
    bool prepared_ = false;           // with surface_ null: nothing is visible
};

/// Background, contents or border of one layer alone.
class ContentPicture : public LayerPicture {
public:
    struct Look {
        CALayer* layer = nullptr; // not compared: the key tells layers apart
        bool contents = false;
        bool direct = false; // not kept: drawn anew at every painting
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

        bool isDrawnLike(Look const& other) const;
    };
    void update(Look const& look);
    void paint(Canvas& canvas, Surface& target, int x, int y) override;

protected:
    void prepare() override;

private:
    void draw(Canvas& canvas) const;
    Look look_;
};

/// Several steps flattened into one picture, cut to rounded corners when there are any.
class GroupPicture : public LayerPicture {
public:
    void update(DisplayList list, PixelRect const& rect, CornerRadii const& radii, double scale,
                std::uint64_t frame);
    Damage const* changesSince(std::uint64_t serial, std::uint64_t frame) const override;
    void dropPixels() override;

protected:
    void prepare() override;

private:
    DisplayList list_;
    CornerRadii radii_;
    Damage changes_; // of the latest change
    Damage stale_;   // of all changes since the pixels were made
    std::uint64_t previousSerial_ = 0;
    std::uint64_t changedFrame_ = 0;
};

/// The shadow that a list of steps casts.
class ShadowPicture : public LayerPicture {
public:
    struct Look {
        CGColor color;
        CGSize offset;        // points
        double deviation = 0; // points
        bool operator==(Look const&) const = default;
    };
    void update(DisplayList list, Look const& look, double scale);

protected:
    void prepare() override;

private:
    DisplayList list_;
    PixelRect source_;
    Look look_;
};

/// A list of steps seen through a transform about a point.
class TransformedPicture : public LayerPicture {
public:
    struct Look {
        CGAffineTransform linear;        // without translation
        double anchorX = 0, anchorY = 0; // pixels from the layer's corner
        PixelRect source;
        PixelRect rect; // pixels from the anchor
        bool operator==(Look const&) const = default;
    };
    void update(DisplayList list, Look const& look, double scale);

protected:
    void prepare() override;

private:
    DisplayList list_;
    Look look_;
};

/// What lies behind a layer, blurred.
class BackdropPicture : public LayerPicture {
public:
    struct Look {
        CALayer::BackdropEffect effect;
        CornerRadii radii;
        PixelRect shape;
        PixelRect visible;
        std::uint64_t behind = 0; // signature
        bool operator==(Look const&) const = default;
    };
    void update(Look const& look, double scale);
    void paint(Canvas& canvas, Surface& target, int x, int y) override;
    bool isLive() const override { return true; }

protected:
    void prepare() override {}

private:
    Look look_{};
};

/// A rounded group that shows what lies behind: it is drawn over a copy of that and then cut.
class IsolatedPicture : public LayerPicture {
public:
    void update(DisplayList list, PixelRect const& rect, CornerRadii const& radii, std::uint64_t behind,
                double scale);
    void paint(Canvas& canvas, Surface& target, int x, int y) override;
    bool isLive() const override { return true; }

protected:
    void prepare() override {}

private:
    DisplayList list_;
    CornerRadii radii_;
    std::uint64_t behind_ = 0;
};

} // namespace trelundo
