#pragma once

#include "platform/uikit/views/UIView.h"

namespace trelundo {

enum class UIScrollViewContentInsetAdjustmentBehavior : int { automatic = 0, scrollableAxes = 1, never = 2, always = 3 };

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

/// A window onto larger content. Its offset is the origin of its bounds; dragging runs on with inertia and springs
/// back from beyond the edges. It can be dragged while an animation moves its offset.
class UIScrollView : public UIView {
public:
    explicit UIScrollView(CGRect frame = {});
    ~UIScrollView() override;

    CGPoint contentOffset() const { return bounds().origin; }
    /// Not clamped; inside an animation block the shown offset follows.
    void setContentOffset(CGPoint offset);
    void setContentOffset(CGPoint offset, bool animated);
    CGSize contentSize() const { return contentSize_; }
    void setContentSize(CGSize size);
    UIEdgeInsets contentInset() const { return contentInset_; }
    void setContentInset(UIEdgeInsets insets);
    UIEdgeInsets adjustedContentInset() const;
    UIScrollViewContentInsetAdjustmentBehavior contentInsetAdjustmentBehavior() const { return insetAdjustment_; }
    void setContentInsetAdjustmentBehavior(UIScrollViewContentInsetAdjustmentBehavior behavior);
    bool bounces() const { return bounces_; }
    void setBounces(bool bounces) { bounces_ = bounces; }
    bool isScrollEnabled() const { return scrollEnabled_; }
    void setScrollEnabled(bool enabled) { scrollEnabled_ = enabled; }
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

    // The window's way in: a touch in this view or a descendant, before the touched view sees it. True: the
    // scroll view has taken the touch over and the touched view's touch is cancelled.
    bool trackTouch(UITouch& touch);

protected:
    /// The offset has changed (by whom ever). Overrides call the superclass.
    virtual void offsetDidChange();
    CGPoint minimumOffset() const;
    CGPoint maximumOffset() const;

private:
    struct State;
    std::unique_ptr<State> state_;
    CGSize contentSize_;
    UIEdgeInsets contentInset_;
    UIScrollViewContentInsetAdjustmentBehavior insetAdjustment_ = UIScrollViewContentInsetAdjustmentBehavior::automatic;
    bool bounces_ = true;
    bool scrollEnabled_ = true;
    bool showsHorizontal_ = true;
    bool showsVertical_ = true;
    double decelerationRate_ = 0.998;
    Weak<UIScrollViewDelegate> scrollDelegate_;
};

} // namespace trelundo
