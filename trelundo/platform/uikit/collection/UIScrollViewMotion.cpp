#include "trelundo/platform/coreanimation/CAMediaTimingFunction.h"
#include "trelundo/platform/uikit/collection/internal/UIScrollViewState.h"

#include "trelundo/platform/coreanimation/CADisplayLink.h"
#include "trelundo/platform/foundation/Clock.h"

#include <algorithm>
#include <cmath>

namespace trelundo {

namespace {

constexpr double dragThreshold = 10; // points
constexpr double catchUpRate = 0.25;
constexpr double velocityWindow = 0.1; // seconds before the release that count for the speed
constexpr double slowestRelease = 50;  // points a second; slower releases stop at once

double speedOf(double distance, double seconds, bool counts) {
    double const speed = counts && seconds > 0 ? distance / seconds : 0;
    return std::abs(speed) < slowestRelease ? 0 : speed;
}

double withinThreshold(double distance) { return std::clamp(distance, -dragThreshold, dragThreshold); }

// The content lags behind by the threshold when a drag begins, so that it does not jump, and catches up with
// the finger on the way: returns `distance` enlarged by the part of `lag` that is made up for.
double caughtUp(double distance, double& lag) {
    if (distance * lag <= 0) return distance;
    double const share = std::copysign(std::min(std::abs(lag), std::abs(distance) * catchUpRate), distance);
    lag -= share;
    return distance + share;
}

constexpr double animationDuration = 0.3; // seconds

} // namespace

// Under the finger.

bool UIScrollView::isTracking() const { return static_cast<bool>(state_->touch); }

bool UIScrollView::isDragging() const { return state_->isDragging; }

bool UIScrollView::canDragHorizontally() const {
    return maximumOffset().x > minimumOffset().x || (bounces_ && alwaysBounceHorizontal_);
}

bool UIScrollView::canDragVertically() const {
    return maximumOffset().y > minimumOffset().y || (bounces_ && alwaysBounceVertical_);
}

bool UIScrollView::trackTouch(UITouch& touch) {
    auto const self = strong(*this);
    if (touch.phase() == UITouchPhase::began) {
        if (!state_->touch && isScrollEnabled_) beginTracking(touch);
        return false;
    }
    if (state_->touch.get() != &touch) return false;
    bool const isOver = touch.phase() == UITouchPhase::ended || touch.phase() == UITouchPhase::cancelled;
    return isOver ? endTracking(touch) : continueTracking(touch);
}

void UIScrollView::beginTracking(UITouch& touch) {
    state_->touch = strong(touch);
    state_->touchStoppedMotion =
        isDecelerating() && std::hypot(state_->x.velocity, state_->y.velocity) > slowestRelease;
    state_->start = state_->finger = touch.locationInWindow();
    state_->samples = {{touch.timestamp(), touch.locationInWindow()}};
    stopMotion();
}

bool UIScrollView::continueTracking(UITouch& touch) {
    state_->addSample({touch.timestamp(), touch.locationInWindow()}, velocityWindow);
    if (!state_->isDragging) {
        CGPoint const translation = touch.locationInWindow() - state_->start;
        bool const starts = (canDragHorizontally() && std::abs(translation.x) >= dragThreshold) ||
                            (canDragVertically() && std::abs(translation.y) >= dragThreshold);
        if (!starts || !isScrollEnabled_) return false;
        beginDragging(translation);
    }
    dragTo(touch.locationInWindow());
    return true;
}

void UIScrollView::beginDragging(CGPoint translation) {
    state_->isDragging = true;
    state_->lag = {withinThreshold(translation.x), withinThreshold(translation.y)};
    state_->finger = state_->start + state_->lag;
    showIndicators();
    if (auto delegate = scrollDelegate()) delegate->scrollViewWillBeginDragging(*this);
}

// Every step starts from the present offset, so a drift that moves it meanwhile adds to the finger's way.
void UIScrollView::dragTo(CGPoint location) {
    CGPoint way = location - std::exchange(state_->finger, location);
    way = {caughtUp(way.x, state_->lag.x), caughtUp(way.y, state_->lag.y)};
    auto const [horizontal, vertical] = offsetRanges();
    CGSize const size = bounds().size;
    auto const moved = [this](double offset, double distance, scroll::Range range, double length) {
        if (distance == 0) return offset;
        if (!bounces_) return range.clamped(offset - distance);
        return scroll::banded(scroll::unbanded(offset, range, length) - distance, range, length);
    };
    CGPoint const offset = contentOffset();
    applyOffset({moved(offset.x, canDragHorizontally() ? way.x : 0, horizontal, size.width),
                 moved(offset.y, canDragVertically() ? way.y : 0, vertical, size.height)});
}

bool UIScrollView::endTracking(UITouch& touch) {
    bool const swallowed = state_->isDragging || state_->touchStoppedMotion;
    state_->addSample({touch.timestamp(), touch.locationInWindow()}, velocityWindow);
    auto const first = state_->samples.front();
    double const seconds = touch.timestamp() - first.time;
    CGPoint const way = touch.locationInWindow() - first.location;
    bool const counts = touch.phase() == UITouchPhase::ended;
    state_->touch = nullptr;
    if (state_->isDragging) {
        endDragging({speedOf(-way.x, seconds, counts && canDragHorizontally()),
                     speedOf(-way.y, seconds, counts && canDragVertically())});
    } else if (needsMotion({})) {
        beginDecelerating({});
    }
    return swallowed;
}

bool UIScrollView::needsMotion(CGPoint velocity) const {
    auto const [horizontal, vertical] = offsetRanges();
    CGPoint const offset = contentOffset();
    return velocity != CGPoint{} || !horizontal.contains(offset.x) || !vertical.contains(offset.y);
}

void UIScrollView::endDragging(CGPoint velocity) {
    state_->isDragging = false;
    askForTarget(velocity);
    bool const decelerates = needsMotion(velocity);
    if (auto delegate = scrollDelegate()) delegate->scrollViewDidEndDragging(*this, decelerates);
    if (decelerates)
        beginDecelerating(velocity);
    else
        fadeIndicators();
}

// Lets the delegate choose where the movement ends. Beyond an edge the spring alone decides.
void UIScrollView::askForTarget(CGPoint& velocity) {
    auto const delegate = scrollDelegate();
    auto const [horizontal, vertical] = offsetRanges();
    CGPoint const offset = contentOffset();
    double const rate = decelerationRate_;
    if (!horizontal.contains(offset.x)) velocity.x = 0;
    if (!vertical.contains(offset.y)) velocity.y = 0;
    if (!delegate) return;
    CGPoint const natural{horizontal.clamped(offset.x + scroll::decelerationDistance(velocity.x, rate)),
                          vertical.clamped(offset.y + scroll::decelerationDistance(velocity.y, rate))};
    CGPoint target = natural;
    delegate->scrollViewWillEndDragging(*this, {velocity.x / 1000, velocity.y / 1000}, target);
    if (target.x != natural.x) velocity.x = scroll::velocityForDistance(target.x - offset.x, rate);
    if (target.y != natural.y) velocity.y = scroll::velocityForDistance(target.y - offset.y, rate);
}

// By itself.

bool UIScrollView::isDecelerating() const { return state_->motion == State::Motion::decelerating; }

void UIScrollView::didMoveToWindow() {
    UIView::didMoveToWindow();
    if (window()) return;
    state_->touch = nullptr;
    state_->isDragging = false;
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
    if (state_->isLinked) return;
    state_->isLinked = true;
    state_->displayLink = CADisplayLink::add([this](double now) { motionFrame(now); });
}

// Ends a movement where it is. The delegate hears of the end of every movement that it heard begin.
void UIScrollView::stopMotion() {
    auto const motion = std::exchange(state_->motion, State::Motion::none);
    if (state_->isLinked) CADisplayLink::remove(state_->displayLink);
    state_->isLinked = false;
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
