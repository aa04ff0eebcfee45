#include "trelundo/platform/coreanimation/CADisplayLink.h"
#include "trelundo/platform/coreanimation/CATransaction.h"
#include "trelundo/platform/foundation/Clock.h"
#include "trelundo/platform/uikit/collection/internal/UIScrollViewState.h"

namespace trelundo {

namespace {

constexpr double animationDuration = 0.3; // seconds

} // namespace

bool UIScrollView::isDecelerating() const { return state_->motion == State::Motion::decelerating; }

void UIScrollView::didMoveToWindow() {
    UIView::didMoveToWindow();
    if (window()) return;
    state_->touch = nullptr;
    state_->dragging = false;
    stopMotion();
}

void UIScrollView::beginAnimating(CGPoint target) {
    state_->expected = contentOffset();
    state_->travel = target - state_->expected;
    state_->goal = target;
    state_->elapsed = 0;
    state_->motion = State::Motion::animating;
    showIndicators();
    startMotion();
}

void UIScrollView::beginDecelerating(CGPoint velocity) {
    state_->x.velocity = velocity.x;
    state_->y.velocity = velocity.y;
    state_->motion = State::Motion::decelerating;
    startMotion();
    if (auto delegate = scrollDelegate()) delegate->scrollViewWillBeginDecelerating(*this);
}

void UIScrollView::startMotion() {
    state_->lastFrame = Clock::current().now();
    if (state_->linked) return;
    state_->linked = true;
    state_->displayLink = CADisplayLink::add([this](double now) { motionFrame(now); });
}

// Ends a movement where it is. The delegate hears of the end of every movement that it heard begin.
void UIScrollView::stopMotion() {
    auto const motion = std::exchange(state_->motion, State::Motion::none);
    if (state_->linked) CADisplayLink::remove(state_->displayLink);
    state_->linked = false;
    if (motion == State::Motion::none) return;
    fadeIndicators();
    auto const delegate = scrollDelegate();
    if (!delegate) return;
    if (motion == State::Motion::decelerating)
        delegate->scrollViewDidEndDecelerating(*this);
    else
        delegate->scrollViewDidEndScrollingAnimation(*this);
}

void UIScrollView::motionFrame(double now) {
    auto const self = strong(*this);
    double const seconds = now - std::exchange(state_->lastFrame, now);
    if (seconds <= 0) return;
    auto const motion = state_->motion;
    bool const isOver = motion == State::Motion::animating ? animateBy(seconds) : decelerateBy(seconds);
    // A delegate may have started something else meanwhile.
    if (isOver && state_->motion == motion) stopMotion();
}

bool UIScrollView::decelerateBy(double seconds) {
    auto const [horizontal, vertical] = offsetRanges();
    double const rate = decelerationRate_;
    CGPoint offset = contentOffset();
    offset.x = state_->x.advance(offset.x, seconds, horizontal, rate, bounces_);
    offset.y = state_->y.advance(offset.y, seconds, vertical, rate, bounces_);
    bool const isOver =
        state_->x.isFinished(offset.x, horizontal) && state_->y.isFinished(offset.y, vertical);
    if (isOver)
        offset = {state_->x.restingOffset(offset.x, horizontal, rate),
                  state_->y.restingOffset(offset.y, vertical, rate)};
    applyOffset(offset);
    return isOver;
}

bool UIScrollView::animateBy(double seconds) {
    // What others have moved meanwhile moves the end, too.
    state_->goal = state_->goal + (contentOffset() - state_->expected);
    state_->elapsed += seconds;
    bool const isOver = state_->elapsed >= animationDuration;
    double const left =
        isOver ? 0 : 1 - CAMediaTimingFunction::easeInEaseOut().valueAt(state_->elapsed / animationDuration);
    state_->expected = state_->goal - CGPoint{state_->travel.x * left, state_->travel.y * left};
    applyOffset(state_->expected);
    return isOver;
}

} // namespace trelundo
