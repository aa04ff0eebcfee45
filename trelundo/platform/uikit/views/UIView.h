#pragma once

#include "trelundo/platform/coreanimation/CALayer.h"
#include "trelundo/platform/uikit/Forward.h"
#include "trelundo/platform/uikit/layout/LayoutItem.h"
#include "trelundo/platform/uikit/layout/NSLayoutConstraint.h"
#include "trelundo/platform/uikit/layout/UIViewAutoresizing.h"
#include "trelundo/platform/uikit/views/UIColor.h"
#include "trelundo/platform/uikit/views/UIResponder.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace trelundo {

enum class UIViewContentMode : int {
    scaleToFill = 0,
    scaleAspectFit = 1,
    scaleAspectFill = 2,
    redraw = 3,
    center = 4,
    top = 5,
    bottom = 6,
    left = 7,
    right = 8,
    topLeft = 9,
    topRight = 10,
    bottomLeft = 11,
    bottomRight = 12,
};
enum class UIViewTintAdjustmentMode : int { automatic = 0, normal = 1, dimmed = 2 };
enum class UISemanticContentAttribute : int {
    unspecified = 0,
    playback = 1,
    spatial = 2,
    forceLeftToRight = 3,
    forceRightToLeft = 4,
};

enum class UIViewAnimationOptions : unsigned {
    none = 0,
    allowUserInteraction = 2,
    repeat = 8,
    autoreverse = 16,
    overrideInheritedDuration = 32,
    overrideInheritedCurve = 64,
    curveEaseInOut = 0u << 16,
    curveEaseIn = 1u << 16,
    curveEaseOut = 2u << 16,
    curveLinear = 3u << 16,
};
constexpr UIViewAnimationOptions operator|(UIViewAnimationOptions a, UIViewAnimationOptions b) {
    return static_cast<UIViewAnimationOptions>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}

/// What assistive programs are told of a view.
enum class UIAccessibilityTraits : unsigned {
    none = 0,
    button = 1,
    link = 2,
    image = 4,
    selected = 8,
    staticText = 64,
    notEnabled = 256,
};
constexpr UIAccessibilityTraits operator|(UIAccessibilityTraits a, UIAccessibilityTraits b) {
    return static_cast<UIAccessibilityTraits>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}

/// A rectangle on screen with its layer, its subviews and its constraints. Geometry, alpha and hidden live in
/// the layer; views in constraint-driven layouts get their frames from the layout pass. Main thread only.
class UIView : public UIResponder, public CALayerDelegate, public LayoutItem {
public:
    static constexpr CGFloat noIntrinsicMetric = -1;

    explicit UIView(CGRect frame = {});
    ~UIView() override;

    // Geometry in points. The origin of `bounds` is a scroll offset.
    CGRect frame() const;
    void setFrame(CGRect frame);
    CGRect bounds() const;
    virtual void setBounds(CGRect bounds);
    CGPoint center() const;
    void setCenter(CGPoint center);
    CGAffineTransform transform() const;
    void setTransform(CGAffineTransform transform);

    // Appearance.
    double alpha() const { return layer_->opacity(); }
    void setAlpha(double alpha);
    bool isHidden() const { return layer_->isHidden(); }
    virtual void setHidden(bool hidden);
    bool clipsToBounds() const { return layer_->masksToBounds(); }
    void setClipsToBounds(bool clips) { layer_->setMasksToBounds(clips); }
    std::optional<UIColor> backgroundColor() const { return backgroundColor_; }
    virtual void setBackgroundColor(std::optional<UIColor> color);
    UIViewContentMode contentMode() const { return contentMode_; }
    void setContentMode(UIViewContentMode mode);
    /// Own value if set, else the nearest ancestor's, else system blue; gray while dimmed.
    UIColor tintColor() const;
    void setTintColor(std::optional<UIColor> color);
    UIViewTintAdjustmentMode tintAdjustmentMode() const;
    void setTintAdjustmentMode(UIViewTintAdjustmentMode mode);
    bool isUserInteractionEnabled() const { return isUserInteractionEnabled_; }
    void setUserInteractionEnabled(bool enabled) { isUserInteractionEnabled_ = enabled; }
    /// Whether touches that hit none of the subviews go on to what lies behind. For views that only arrange
    /// others; false at first.
    bool passesTouches() const { return passesTouches_; }
    void setPassesTouches(bool passes) { passesTouches_ = passes; }
    int tag() const { return tag_; }
    void setTag(int tag) { tag_ = tag; }
    UISemanticContentAttribute semanticContentAttribute() const { return semanticContentAttribute_; }
    void setSemanticContentAttribute(UISemanticContentAttribute attribute);
    /// What `attribute` means under the application's direction.
    static UIUserInterfaceLayoutDirection userInterfaceLayoutDirection(UISemanticContentAttribute attribute);
    UIUserInterfaceLayoutDirection effectiveUserInterfaceLayoutDirection() const;
    bool isRightToLeft() const {
        return effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
    }

    CALayer& layer() const { return *layer_; }

    // The tree. Subviews are in drawing order, back to front; adding a view elsewhere moves it.
    std::vector<Ref<UIView>> const& subviews() const { return subviews_; }
    UIView* superview() const { return superview_; }
    UIWindow* window() const { return window_ ? window_->asWindow() : nullptr; }
    void addSubview(Ref<UIView> view);
    void insertSubview(Ref<UIView> view, std::size_t index);
    void insertSubviewAbove(Ref<UIView> view, UIView const& sibling);
    void insertSubviewBelow(Ref<UIView> view, UIView const& sibling);
    void bringSubviewToFront(UIView& view);
    void removeFromSuperview();
    bool isDescendantOf(UIView const& view) const;
    Ref<UIView> viewWithTag(int tag);

    // Coordinates. A null view means window coordinates.
    CGPoint convertPointTo(CGPoint point, UIView const* view) const;
    CGPoint convertPointFrom(CGPoint point, UIView const* view) const;
    CGRect convertRectTo(CGRect rect, UIView const* view) const;
    CGRect convertRectFrom(CGRect rect, UIView const* view) const;
    virtual Ref<UIView> hitTest(CGPoint point);
    virtual bool pointInside(CGPoint point) const;

    // Layout.
    bool translatesAutoresizingMaskIntoConstraints() const { return translatesAutoresizingMask_; }
    void setTranslatesAutoresizingMaskIntoConstraints(bool translates);
    UIViewAutoresizing autoresizingMask() const { return autoresizingMask_; }
    void setAutoresizingMask(UIViewAutoresizing mask) { autoresizingMask_ = mask; }
    virtual CGSize intrinsicContentSize() const { return {noIntrinsicMetric, noIntrinsicMetric}; }
    void invalidateIntrinsicContentSize();
    UILayoutPriority contentHuggingPriority(NSLayoutConstraintAxis axis) const;
    void setContentHuggingPriority(UILayoutPriority priority, NSLayoutConstraintAxis axis);
    UILayoutPriority contentCompressionResistancePriority(NSLayoutConstraintAxis axis) const;
    void setContentCompressionResistancePriority(UILayoutPriority priority, NSLayoutConstraintAxis axis);
    virtual CGSize sizeThatFits(CGSize size) const;
    void sizeToFit();
    /// The smallest size that satisfies the inner constraints, with `target` pulled at priority 50.
    CGSize systemLayoutSizeFitting(CGSize target);
    void setNeedsLayout();
    void layoutIfNeeded();
    /// Applies solved frames to the direct subviews. Overrides call the superclass first.
    virtual void layoutSubviews();
    void setNeedsUpdateConstraints();
    virtual void updateConstraints() {}
    /// Distances of the first and last text baseline from the top and bottom edge; none without text.
    virtual std::optional<double> firstBaselineOffsetFromTop() const { return std::nullopt; }
    virtual std::optional<double> lastBaselineOffsetFromBottom() const { return std::nullopt; }
    /// Told before the second solving of a layout pass, with the width that the first gave. A view whose
    /// height depends on it (a wrapping label) re-reads its intrinsic size and answers true.
    virtual bool layoutWidthDidChange(double /*width*/) { return false; }

    NSLayoutXAxisAnchor leadingAnchor();
    NSLayoutXAxisAnchor trailingAnchor();
    NSLayoutXAxisAnchor leftAnchor();
    NSLayoutXAxisAnchor rightAnchor();
    NSLayoutXAxisAnchor centerXAnchor();
    NSLayoutYAxisAnchor topAnchor();
    NSLayoutYAxisAnchor bottomAnchor();
    NSLayoutYAxisAnchor centerYAnchor();
    NSLayoutYAxisAnchor firstBaselineAnchor();
    NSLayoutYAxisAnchor lastBaselineAnchor();
    NSLayoutDimension widthAnchor();
    NSLayoutDimension heightAnchor();
    /// The constraints installed on this view (those whose nearest common ancestor it is).
    std::vector<Ref<NSLayoutConstraint>> const& constraints() const { return constraints_; }

    Ref<UILayoutGuide> safeAreaLayoutGuide();
    Ref<UILayoutGuide> layoutMarginsGuide();
    void addLayoutGuide(Ref<UILayoutGuide> guide);
    void removeLayoutGuide(UILayoutGuide& guide);
    std::vector<Ref<UILayoutGuide>> const& layoutGuides() const { return layoutGuides_; }
    UIEdgeInsets safeAreaInsets() const;
    virtual void safeAreaInsetsDidChange() {}
    /// As set, plus the safe area's part while insetsLayoutMarginsFromSafeArea is true.
    UIEdgeInsets layoutMargins() const;
    void setLayoutMargins(UIEdgeInsets margins);
    NSDirectionalEdgeInsets directionalLayoutMargins() const;
    void setDirectionalLayoutMargins(NSDirectionalEdgeInsets margins);
    bool insetsLayoutMarginsFromSafeArea() const { return insetsLayoutMarginsFromSafeArea_; }
    void setInsetsLayoutMarginsFromSafeArea(bool insets);

    // Drawing.
    void setNeedsDisplay();
    /// Draws the view's own contents; only called when drawsContents() is true.
    virtual void draw(CGRect /*rect*/, Canvas& /*canvas*/) {}
    void drawLayer(CALayer& layer, Canvas& canvas) final;

    // Callbacks. Overrides call the superclass.
    virtual void willMoveToSuperview(UIView* /*superview*/) {}
    virtual void didMoveToSuperview() {}
    virtual void willMoveToWindow(UIWindow* /*window*/) {}
    virtual void didMoveToWindow() {}
    virtual void tintColorDidChange() {}
    virtual void didAddSubview(UIView& /*view*/) {}
    virtual void willRemoveSubview(UIView& /*view*/) {}
    UITraitCollection const& traitCollection() const override;
    UIResponder* nextResponder() const override;

    // Accessibility. The identifier names the view in scripts and descriptions.
    std::string const& accessibilityIdentifier() const { return accessibilityIdentifier_; }
    void setAccessibilityIdentifier(std::string identifier) {
        accessibilityIdentifier_ = std::move(identifier);
    }
    virtual std::string accessibilityLabel() const { return accessibilityLabel_; }
    void setAccessibilityLabel(std::string label) { accessibilityLabel_ = std::move(label); }
    virtual UIAccessibilityTraits accessibilityTraits() const { return UIAccessibilityTraits::none; }

    // Animation. The closure runs at once; what is shown moves from the old to the new values. The completion
    // never runs inside the call.
    struct AnimationParameters {
        double duration = 0.25; // seconds
        double delay = 0;       // seconds
        UIViewAnimationOptions options = UIViewAnimationOptions::none;
        std::function<void()> animations;
        std::function<void(bool finished)> completion = nullptr;
    };
    static void animate(AnimationParameters parameters);
    static void performWithoutAnimation(std::function<void()> const& actions);
    /// While false, the durations of animations count as zero; completions still come.
    static void setAnimationsEnabled(bool enabled);
    static bool areAnimationsEnabled();

protected:
    /// For subclasses with a layer of their own class, which is asked for once, at creation.
    UIView(CGRect frame, Ref<CALayer> layer);
    /// The text colour, tint or picture may resolve differently: redraw. Overrides call the superclass.
    virtual void appearanceDidChange();
    /// A direct subview was hidden or shown again.
    virtual void subviewHiddenDidChange(UIView& /*view*/) {}
    /// A direct subview that constraints place has invalidated its intrinsic size.
    virtual void subviewContentSizeDidChange(UIView& /*view*/) {}
    /// Whether touches pass the view by while an animation moves it that does not allow them.
    virtual bool refusesTouchesInAnimations() const { return true; }
    bool isInVisibleWindow() const { return window_ && !window_->isHidden(); }

private:
    friend class FittingScope;
    friend class LayoutEngine;
    friend class LayoutNode;
    friend class LayoutPass;
    friend class NSLayoutConstraint;
    friend class UIWindow;
    friend class UIViewController;
    friend class PresentationEngine;

    // What a window is to the views in it.
    virtual UIWindow* asWindow() { return nullptr; }
    virtual UIEdgeInsets windowSafeAreaInsets() const { return {}; }
    virtual void cancelTouchesIn(UIView const& /*subtree*/) {}

    // An item of constraints.
    UIView* layoutView() override { return this; }
    UILayoutGuide* layoutGuide() override { return nullptr; }
    std::string layoutName() const override;

    // Changes of the tree.
    bool mayContain(UIView const& view) const;
    void restack(Ref<UIView> const& view, std::size_t index);
    void place(Ref<UIView> const& view, std::size_t index);
    void detach(UIView& view);
    void announceWindow(UIView* window);
    void adoptWindow(UIView* window);
    void reportWindow(UIView const* window);
    void moveToWindow(UIView* window);

    // Conversions between this view's coordinates and the superview's or the root's.
    CGAffineTransform transformToSuperview() const;
    CGAffineTransform transformTo(UIView const* view) const;

    // Traits and tint (UIViewTraits.cpp).
    static UITraitCollection const& predictedTraits();
    void traitsDidPropagate();
    void reportTraits(UITraitCollection const& traits);
    void backgroundColorDidResolve();
    void directionDidChange();
    void displayScaleDidChange();
    UIView const* tintSource() const;
    bool isTintDimmed() const;
    void tintDidPropagate(bool dimmingChanged);
    void setDimmedBehindPresentation(bool dimmed);

    // Refusal of touches while an animation moves the view (UIViewAnimation.cpp).
    bool refusesTouches() const;
    void noteAnimatedChange();
    static void endRefusal(std::vector<Weak<UIView>> const& views);

    // Layout's part of changes of tree and geometry (UIViewLayout.cpp).
    void markSubtreeForLayout();
    void marginsDidChange();
    void contentPriorityDidChange();
    void dropConstraintsAcross(UIView const& border);
    CGRect untransformedFrame() const;
    void autoresize(CGSize superviewSizeBefore);
    Ref<UILayoutGuide> makeInsetGuide(std::string identifier, bool followsSafeArea);
    bool updateSafeAreaInsets(); // true when they are other ones now; reports them
    void layoutSubviewAdded(UIView& view);
    void layoutSubviewWillBeRemoved(UIView& view);
    void layoutSizeDidChange(); // bounds size changed, by hand or by a layout pass
    void layoutFrameWasSet();   // frame, center or bounds assigned by hand

    Ref<CALayer> layer_;
    std::optional<UIColor> backgroundColor_;
    std::optional<UIColor> tintColor_;
    UIViewTintAdjustmentMode tintAdjustmentMode_ = UIViewTintAdjustmentMode::automatic;
    UIViewContentMode contentMode_ = UIViewContentMode::scaleToFill;
    UISemanticContentAttribute semanticContentAttribute_ = UISemanticContentAttribute::unspecified;
    bool isUserInteractionEnabled_ = true;
    bool passesTouches_ = false;
    int tag_ = 0;

    UIView* superview_ = nullptr; // the superview owns this one
    UIView* window_ = nullptr;    // the window at the root of the tree
    ViewOwner* owner_ = nullptr;  // the controller whose root view this is
    std::vector<Ref<UIView>> subviews_;

    bool translatesAutoresizingMask_ = true;
    UIViewAutoresizing autoresizingMask_ = UIViewAutoresizing::none;
    UILayoutPriority hugging_[2] = {UILayoutPriority::defaultLow, UILayoutPriority::defaultLow};
    UILayoutPriority compression_[2] = {UILayoutPriority::defaultHigh, UILayoutPriority::defaultHigh};
    bool needsLayout_ = true;
    bool needsUpdateConstraints_ = true;
    std::vector<Ref<NSLayoutConstraint>> constraints_;
    std::vector<Ref<UILayoutGuide>> layoutGuides_;
    Ref<UILayoutGuide> safeAreaGuide_;
    Ref<UILayoutGuide> marginsGuide_;
    UIEdgeInsets layoutMargins_{8, 8, 8, 8};
    UIEdgeInsets safeAreaInsets_;
    bool insetsLayoutMarginsFromSafeArea_ = true;
    bool layoutMarginsWereSet_ = false;
    bool marginsAreDirectional_ = false;  // layoutMargins_ holds leading as left, trailing as right
    bool subtreeNeedsLayout_ = true;      // this view or a descendant is marked
    bool subtreeNeedsConstraints_ = true; // the same for updateConstraints()
    bool safeAreaIsStale_ = true;         // its place or the window's insets may have changed
    bool isLayingOut_ = false;
    CGSize laidOutSize_;                     // by which subviews were last autoresized
    std::shared_ptr<LayoutNode> layoutNode_; // its part in constraint layout, made when first needed

    std::optional<UITraitCollection> lastTraits_; // as last reported; absent before the first window
    std::shared_ptr<UITraitCollection const>
        traitsOverride_;                   // of a presentation with size classes of its own
    UIUserInterfaceStyle appearanceStyle_; // by which colours were last resolved
    bool isDimmedBehindPresentation_ = false;
    int refusingAnimations_ = 0; // running ones that were started without allowUserInteraction
    std::string accessibilityIdentifier_;
    std::string accessibilityLabel_;
};

} // namespace trelundo
