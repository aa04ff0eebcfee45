#pragma once

#include "trelundo/platform/foundation/Weak.h"
#include "trelundo/platform/graphics/CGColor.h"
#include "trelundo/platform/graphics/Canvas.h"
#include "trelundo/platform/graphics/Geometry.h"
#include "trelundo/platform/graphics/Picture.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace trelundo {

class CALayer;
struct LayerAnimation;

/// What owns a layer and supplies its contents; for a view's layer the view. A protocol: implement it beside
/// NSObject.
class CALayerDelegate {
public:
    virtual ~CALayerDelegate() = default;
    /// Draws the layer's own contents in its bounds; called when the layer needs display.
    virtual void drawLayer(CALayer& /*layer*/, Canvas& /*canvas*/) {}
    /// Whether drawLayer draws anything at all.
    virtual bool drawsContents() const { return false; }
    /// Whether drawLayer merely copies pixels that are kept elsewhere (a scaled picture), so that keeping
    /// them once more would be waste.
    virtual bool retainsContents() const { return false; }
    /// Where drawLayer may draw, in bounds coordinates. By default a little beyond the bounds, for texts that
    /// reach out of a label lower than their line.
    virtual CGRect drawingRect(CALayer const& layer) const;
};

enum class CACornerMask : unsigned {
    minXMinY = 1,
    maxXMinY = 2,
    minXMaxY = 4,
    maxXMaxY = 8,
    all = 15,
};

/// The animated properties of a layer at one moment.
struct CALayerValues {
    CGRect bounds;
    CGPoint position;
    CGAffineTransform transform;
    double opacity = 1;
    std::optional<CGColor> backgroundColor;
    double cornerRadius = 0;
    double borderWidth = 0;
    CGColor borderColor{0, 0, 0, 1};
};

/// A node of the drawn tree. Drawing order inside one layer: shadow, background, contents, sublayers by
/// zPosition and index, border. A change inside a CATransaction with a duration animates from the old value.
/// Main thread only.
class CALayer : public NSObject {
public:
    CALayer();
    ~CALayer() override;

    // Geometry, in points of the superlayer. `frame` follows from bounds, position, anchor point and
    // transform.
    CGRect bounds() const { return values_.bounds; }
    void setBounds(CGRect bounds);
    CGPoint position() const { return values_.position; }
    void setPosition(CGPoint position);
    CGPoint anchorPoint() const { return anchorPoint_; }
    void setAnchorPoint(CGPoint anchorPoint);
    CGAffineTransform transform() const { return values_.transform; }
    void setTransform(CGAffineTransform transform);
    CGRect frame() const;
    void setFrame(CGRect frame);
    double zPosition() const { return zPosition_; }
    void setZPosition(double z);

    double opacity() const { return values_.opacity; }
    void setOpacity(double opacity);
    bool isHidden() const { return isHidden_; }
    void setHidden(bool hidden);
    bool masksToBounds() const { return masksToBounds_; }
    void setMasksToBounds(bool masks);
    std::optional<CGColor> backgroundColor() const { return values_.backgroundColor; }
    void setBackgroundColor(std::optional<CGColor> color);
    double cornerRadius() const { return values_.cornerRadius; }
    void setCornerRadius(double radius);
    CACornerMask maskedCorners() const { return maskedCorners_; }
    void setMaskedCorners(CACornerMask corners);
    double borderWidth() const { return values_.borderWidth; }
    void setBorderWidth(double width);
    CGColor borderColor() const { return values_.borderColor; }
    void setBorderColor(CGColor color);
    CGColor shadowColor() const { return shadowColor_; }
    void setShadowColor(CGColor color);
    double shadowOpacity() const { return shadowOpacity_; }
    void setShadowOpacity(double opacity);
    CGSize shadowOffset() const { return shadowOffset_; }
    void setShadowOffset(CGSize offset);
    double shadowRadius() const { return shadowRadius_; }
    void setShadowRadius(double radius);
    double contentsScale() const { return contentsScale_; }
    void setContentsScale(double scale);
    /// True: the whole subtree is kept as one picture, which pays where it moves often and changes seldom.
    bool shouldRasterize() const { return shouldRasterize_; }
    void setShouldRasterize(bool rasterize);

    /// Marks the root of a tree that a window shows. Only layers below such a root animate; one that leaves
    /// the tree loses its animations.
    void setDisplayRoot(bool root);
    bool isDisplayed() const;

    // The tree. A layer has one superlayer; adding it elsewhere moves it.
    std::vector<Ref<CALayer>> const& sublayers() const { return sublayers_; }
    CALayer* superlayer() const { return superlayer_; }
    void addSublayer(Ref<CALayer> layer);
    /// An index beyond the end appends.
    void insertSublayer(Ref<CALayer> layer, std::size_t index);
    void removeFromSuperlayer();

    void setDelegate(Weak<CALayerDelegate> delegate) { delegate_ = std::move(delegate); }
    Ref<CALayerDelegate> delegate() const { return delegate_.lock(); }

    /// Marks the contents for a new drawing before the next frame.
    void setNeedsDisplay();

    /// The values shown at the frame that is current now; the assigned ones when nothing is animated.
    CALayerValues presentationValues() const;
    /// Drops all running animations; their completions get false.
    void removeAllAnimations();
    bool isAnimating() const;

    // For the compositor.
    /// Tells layers apart for the life of the process.
    std::uint64_t identity() const { return identity_; }
    CALayerValues valuesAt(double time) const;
    bool hasShadow() const;
    /// Where drawContents() may draw, in bounds coordinates: a text may reach out of its layer.
    virtual CGRect contentsRect() const;
    /// Grows with every change of any layer's looks or place.
    static std::uint64_t changeCount();
    /// Draws what stands between background and sublayers; a gradient layer overrides it.
    virtual void drawContents(Canvas& canvas);
    virtual bool hasContents() const;
    /// Live effect over what lies behind the layer (a blur); none for ordinary layers.
    struct BackdropEffect {
        double blurRadius;
        double saturation;
        CGColor overlay;
        bool operator==(BackdropEffect const&) const = default;
    };
    std::optional<BackdropEffect> backdropEffect() const { return backdropEffect_; }
    void setBackdropEffect(std::optional<BackdropEffect> effect);
    /// Grows with every change that alters the pixels of this layer alone.
    std::uint64_t contentVersion() const { return contentVersion_; }

protected:
    /// To be called by subclasses after a change of their own pixels.
    void contentChanged();

private:
    friend class AnimationRegistry;

    template <class Value> void assign(Value CALayerValues::*property, Value value);
    template <class Value> void assignAppearance(Value& property, Value value);
    void detach();
    void leaveDisplay();
    bool hasAncestor(CALayer const& layer) const;

    std::uint64_t const identity_;
    CALayerValues values_;
    CGPoint anchorPoint_{0.5, 0.5};
    double zPosition_ = 0;
    bool isHidden_ = false;
    bool masksToBounds_ = false;
    bool shouldRasterize_ = false;
    bool isDisplayRoot_ = false;
    CACornerMask maskedCorners_ = CACornerMask::all;
    CGColor shadowColor_{0, 0, 0, 1};
    double shadowOpacity_ = 0;
    CGSize shadowOffset_{0, -3};
    double shadowRadius_ = 3;
    double contentsScale_ = 1;
    std::optional<BackdropEffect> backdropEffect_;
    std::uint64_t contentVersion_ = 1;
    Weak<CALayerDelegate> delegate_;
    CALayer* superlayer_ = nullptr; // the superlayer owns this one
    std::vector<Ref<CALayer>> sublayers_;
    std::vector<std::shared_ptr<LayerAnimation>> animations_;
};

} // namespace trelundo
