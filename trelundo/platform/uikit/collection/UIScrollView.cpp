#include "trelundo/platform/uikit/collection/UIScrollView.h"

#include "trelundo/platform/coreanimation/CADisplayLink.h"
#include "trelundo/platform/coreanimation/CATransaction.h"
#include "trelundo/platform/uikit/collection/internal/UIScrollViewState.h"

namespace trelundo {

namespace {

ScrollIndicators::Extent indicatorExtent(UIScrollView const& view) {
    return {view.bounds(), view.contentSize(), view.adjustedContentInset(),
            view.showsHorizontalScrollIndicator(), view.showsVerticalScrollIndicator()};
}

} // namespace

UIScrollView::UIScrollView(CGRect frame)
    : UIView(frame)
    , state_(std::make_unique<State>(layer())) {
    setClipsToBounds(true);
}

UIScrollView::~UIScrollView() {
    if (state_->isLinked) CADisplayLink::remove(state_->displayLink);
}

// Offset.

void UIScrollView::setContentOffset(CGPoint offset) {
    // A step of an animation chain adds to whatever moves the content; a plain assignment takes over.
    if (!CATransaction::isAnimating()) stopMotion();
    applyOffset(offset);
}

void UIScrollView::setContentOffset(CGPoint offset, bool animated) {
    if (!animated) return setContentOffset(offset);
    stopMotion();
    beginAnimating(offset);
}

bool UIScrollView::scrollBy(CGPoint delta) {
    if (!isScrollEnabled_ || isTracking()) return false;
    auto const [horizontal, vertical] = offsetRanges();
    CGPoint const offset = contentOffset();
    CGPoint const target{horizontal.movedWithin(offset.x, delta.x), vertical.movedWithin(offset.y, delta.y)};
    if (target == offset) return false;
    stopMotion();
    showIndicators();
    applyOffset(target);
    fadeIndicators();
    return true;
}

void UIScrollView::applyOffset(CGPoint offset) { setBounds({offset, bounds().size}); }

void UIScrollView::setBounds(CGRect bounds) {
    CGPoint const before = contentOffset();
    UIView::setBounds(bounds);
    if (contentOffset() != before) offsetDidChange();
}

void UIScrollView::offsetDidChange() {
    setNeedsLayout();
    updateIndicators();
    if (auto delegate = scrollDelegate()) delegate->scrollViewDidScroll(*this);
}

CGPoint UIScrollView::minimumOffset() const {
    UIEdgeInsets const insets = adjustedContentInset();
    return {0 - insets.left, 0 - insets.top}; // a minus sign would make a negative zero
}

CGPoint UIScrollView::maximumOffset() const {
    UIEdgeInsets const insets = adjustedContentInset();
    CGSize const size = bounds().size;
    CGPoint const low = minimumOffset();
    return {std::max(low.x, contentSize_.width - size.width + insets.right),
            std::max(low.y, contentSize_.height - size.height + insets.bottom)};
}

UIScrollView::OffsetRanges UIScrollView::offsetRanges() const {
    CGPoint const low = minimumOffset();
    CGPoint const high = maximumOffset();
    return {{low.x, high.x}, {low.y, high.y}};
}

// Content and insets.

void UIScrollView::setContentSize(CGSize size) {
    contentSize_ = size;
    setNeedsLayout();
}

void UIScrollView::setContentInset(UIEdgeInsets insets) {
    contentInset_ = insets;
    setNeedsLayout();
}

void UIScrollView::setContentInsetAdjustmentBehavior(UIScrollViewContentInsetAdjustmentBehavior behavior) {
    insetAdjustment_ = behavior;
    setNeedsLayout();
}

UIEdgeInsets UIScrollView::adjustedContentInset() const {
    using Behavior = UIScrollViewContentInsetAdjustmentBehavior;
    UIEdgeInsets result = contentInset_;
    if (insetAdjustment_ == Behavior::never) return result;
    bool const always = insetAdjustment_ == Behavior::always;
    UIEdgeInsets const safe = safeAreaInsets();
    if (always || contentSize_.width > bounds().size.width) {
        result.left += safe.left;
        result.right += safe.right;
    }
    if (always || contentSize_.height > bounds().size.height) {
        result.top += safe.top;
        result.bottom += safe.bottom;
    }
    return result;
}

// Layout and indicators.

void UIScrollView::layoutSubviews() {
    UIView::layoutSubviews();
    CGSize const before = std::exchange(state_->lastSize, bounds().size);
    if (before != bounds().size && !CGRect{{}, before}.isEmpty()) sizeDidChange(before);
}

void UIScrollView::sizeDidChange(CGSize) {
    if (isTracking() || state_->motion != State::Motion::none) return;
    applyOffset(offsetRanges().clamped(contentOffset()));
}

void UIScrollView::safeAreaInsetsDidChange() {
    UIView::safeAreaInsetsDidChange();
    setNeedsLayout();
}

void UIScrollView::setShowsHorizontalScrollIndicator(bool shows) {
    showsHorizontal_ = shows;
    updateIndicators();
}

void UIScrollView::setShowsVerticalScrollIndicator(bool shows) {
    showsVertical_ = shows;
    updateIndicators();
}

void UIScrollView::updateIndicators() { state_->indicators.update(indicatorExtent(*this)); }

void UIScrollView::showIndicators() { state_->indicators.show(indicatorExtent(*this)); }

void UIScrollView::fadeIndicators() { state_->indicators.fade(); }

} // namespace trelundo
