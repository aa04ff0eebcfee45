#pragma once

#include "trelundo/platform/uikit/views/UIView.h"

namespace trelundo {

enum class UIScrollViewContentInsetAdjustmentBehavior : int {
    automatic = 0,
    scrollableAxes = 1,
    never = 2,
    always = 3
};

/// Told of scrolling, synchronously. A protocol: implement it beside NSObject.
class UIScrollViewDelegate {
public:
    virtual ~UIScrollViewDelegate() = default;
    virtual void scrollViewDidScroll(UIScrollView&) {}
    virtual void scrollViewWillBeginDragging(UIScrollView&) {}
    /// `velocity` in points a millisecond; `target` may be changed.
    virtual void scrollViewWillEndDragging(UIScrollView&, CGPoint /*velocity*/, CGPoint& /*target*/) {}
    virtual void scrollViewDidEndDragging(UIScrollView&, bool /*willDecelerate*/) {}
    virtual void scrollViewWillBeginDecelerating(UIScrollView&) {}
    virtual void scrollViewDidEndDecelerating(UIScrollView&) {}
    virtual void scrollViewDidEndScrollingAnimation(UIScrollView&) {}
};

/// A window onto larger content. Its offset is the origin of its bounds; dragging runs on with inertia and
/// springs back from beyond the edges. It can be dragged while an animation moves its offset.
class UIScrollView : public UIView {
public:
    explicit UIScrollView(CGRect frame = {});
    ~UIScrollView() override;

    CGPoint contentOffset() const { return bounds().origin; }
    /// Not clamped; inside an animation block the shown offset follows.
    void setContentOffset(CGPoint offset);
    /// Animated: within 0.3 seconds, then scrollViewDidEndScrollingAnimation; contentOffset() follows frame
    /// by frame.
    void setContentOffset(CGPoint offset, bool animated);
    /// Moves at once by `delta` points, as a mouse wheel does: never beyond an edge, nor back from beyond
    /// one, and not while scrolling is off or a finger holds the content. False when nothing moved.
    bool scrollBy(CGPoint delta);
    /// The offsets at which the content's edges meet the view's, insets counted.
    CGPoint minimumOffset() const;
    CGPoint maximumOffset() const;
    CGSize contentSize() const { return contentSize_; }
    void setContentSize(CGSize size);
    UIEdgeInsets contentInset() const { return contentInset_; }
    void setContentInset(UIEdgeInsets insets);
    UIEdgeInsets adjustedContentInset() const;
    UIScrollViewContentInsetAdjustmentBehavior contentInsetAdjustmentBehavior() const {
        return insetAdjustment_;
    }
    void setContentInsetAdjustmentBehavior(UIScrollViewContentInsetAdjustmentBehavior behavior);
    bool bounces() const { return bounces_; }
    void setBounces(bool bounces) { bounces_ = bounces; }
    /// Whether an axis on which everything fits can be dragged all the same, against the rubber band.
    bool alwaysBounceHorizontal() const { return alwaysBounceHorizontal_; }
    void setAlwaysBounceHorizontal(bool always) { alwaysBounceHorizontal_ = always; }
    bool alwaysBounceVertical() const { return alwaysBounceVertical_; }
    void setAlwaysBounceVertical(bool always) { alwaysBounceVertical_ = always; }
    bool isScrollEnabled() const { return isScrollEnabled_; }
    void setScrollEnabled(bool enabled) { isScrollEnabled_ = enabled; }
    bool showsHorizontalScrollIndicator() const { return showsHorizontal_; }
    void setShowsHorizontalScrollIndicator(bool shows);
    bool showsVerticalScrollIndicator() const { return showsVertical_; }
    void setShowsVerticalScrollIndicator(bool shows);
    /// Kept of the speed each millisecond: 0.998 normal, 0.99 fast.
    double decelerationRate() const { return decelerationRate_; }
    void setDecelerationRate(double rate) { decelerationRate_ = rate; }
    bool isTracking() const;
    bool isDragging() const;
    bool isDecelerating() const;

    Ref<UIScrollViewDelegate> scrollDelegate() const { return scrollDelegate_.lock(); }
    void setScrollDelegate(Weak<UIScrollViewDelegate> delegate) { scrollDelegate_ = std::move(delegate); }

    void setBounds(CGRect bounds) override;
    void didMoveToWindow() override;
    void layoutSubviews() override;
    void safeAreaInsetsDidChange() override;

    /// The window's way in: a touch in this view or a descendant, in every phase, before the touched view
    /// sees it. True: the scroll view has taken the touch over and the touched view's touch is cancelled
    /// (also for the last phase, when the touch only served to stop a running deceleration).
    bool trackTouch(UITouch& touch);

protected:
    /// The offset has changed (by whom ever). Overrides call the superclass.
    virtual void offsetDidChange();
    /// What scrolls stays in the user's hand while an animation makes it drift.
    bool refusesTouchesInAnimations() const override { return false; }
    /// Layout has found another size than `before`: brings back what now lies beyond the far edge.
    virtual void sizeDidChange(CGSize before);

private:
    struct OffsetRanges;
    struct State;

    OffsetRanges offsetRanges() const;
    void applyOffset(CGPoint offset);
    void showIndicators();
    void updateIndicators();
    void fadeIndicators();

    // Dragging and movement by itself (UIScrollViewMotion.cpp).
    bool canDragHorizontally() const;
    bool canDragVertically() const;
    void beginTracking(UITouch& touch);
    bool continueTracking(UITouch& touch);
    bool endTracking(UITouch& touch);
    void beginDragging(CGPoint translation);
    void dragTo(CGPoint location);
    void endDragging(CGPoint velocity);
    void askForTarget(CGPoint& velocity);
    bool needsMotion(CGPoint velocity) const;
    void beginDecelerating(CGPoint velocity);
    void beginAnimating(CGPoint target);
    void startMotion();
    void stopMotion();
    void motionFrame(double now);
    bool decelerateBy(double seconds);
    bool animateBy(double seconds);

    std::unique_ptr<State> state_;
    CGSize contentSize_;
    UIEdgeInsets contentInset_;
    UIScrollViewContentInsetAdjustmentBehavior insetAdjustment_ =
        UIScrollViewContentInsetAdjustmentBehavior::automatic;
    bool bounces_ = true;
    bool alwaysBounceHorizontal_ = false;
    bool alwaysBounceVertical_ = false;
    bool isScrollEnabled_ = true;
    bool showsHorizontal_ = true;
    bool showsVertical_ = true;
    double decelerationRate_ = 0.998;
    Weak<UIScrollViewDelegate> scrollDelegate_;
};

} // namespace trelundo
