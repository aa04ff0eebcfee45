#include "trelundo/platform/uikit/controls/UIControl.h"

#include "trelundo/platform/uikit/views/UITouch.h"

namespace trelundo {

namespace {

// How far outside its bounds a control still counts a finger as inside, points.
constexpr double touchTolerance = 70;

} // namespace

UIControl::UIControl(CGRect frame)
    : UIView(frame) {}
UIControl::UIControl(CGRect frame, Ref<CALayer> layer)
    : UIView(frame, std::move(layer)) {}

void UIControl::setEnabled(bool enabled) {
    isEnabled_ = enabled;
    if (!enabled && isTracking()) {
        trackedTouch_ = nullptr;
        setHighlighted(false);
    }
    stateDidChange();
}

void UIControl::setSelected(bool selected) {
    isSelected_ = selected;
    stateDidChange();
}

void UIControl::setHighlighted(bool highlighted) {
    isHighlighted_ = highlighted;
    stateDidChange();
}

UIControlState UIControl::state() const {
    auto state = UIControlState::normal;
    if (isHighlighted_) state = state | UIControlState::highlighted;
    if (!isEnabled_) state = state | UIControlState::disabled;
    if (isSelected_) state = state | UIControlState::selected;
    return state;
}

void UIControl::stateDidChange() {
    setNeedsLayout();
    setNeedsDisplay();
}

void UIControl::setContentHorizontalAlignment(UIControlContentHorizontalAlignment alignment) {
    horizontalAlignment_ = alignment;
    stateDidChange();
}

void UIControl::setContentVerticalAlignment(UIControlContentVerticalAlignment alignment) {
    verticalAlignment_ = alignment;
    stateDidChange();
}

UIControlContentHorizontalAlignment UIControl::effectiveContentHorizontalAlignment() const {
    using Alignment = UIControlContentHorizontalAlignment;
    if (horizontalAlignment_ == Alignment::leading)
        return isRightToLeft() ? Alignment::right : Alignment::left;
    if (horizontalAlignment_ == Alignment::trailing)
        return isRightToLeft() ? Alignment::left : Alignment::right;
    return horizontalAlignment_;
}

void UIControl::addAction(Action action) {
    for (auto const& known : actions_) {
        if (!known->target.refersToSame(action.target) || known->identity != action.identity) continue;
        known->events = known->events | action.events;
        return;
    }
    actions_.push_back(std::make_shared<Action>(std::move(action)));
}

void UIControl::removeTarget(NSObject& target) {
    std::erase_if(actions_, [&target](auto const& action) {
        bool const matches = action->target.refersTo(target);
        if (matches) action->isRemoved = true;
        return matches;
    });
}

void UIControl::sendActions(UIControlEvents events) {
    // Actions may remove targets or let go of the control.
    auto const self = strong(*this);
    auto const actions = actions_;
    for (auto const& action : actions)
        if (!action->isRemoved && intersects(action->events, events)) action->call(*this);
}

Ref<UIView> UIControl::hitTest(CGPoint point) {
    auto const hit = UIView::hitTest(point);
    return hit && !isEnabled_ ? Ref<UIView>{strong(*this)} : hit;
}

bool UIControl::tracks(UITouch const& touch) const { return trackedTouch_.refersTo(touch) && isTracking(); }

void UIControl::touchesBegan(UITouch& touch) {
    if (!isEnabled_ || isTracking()) return;
    auto const self = strong(*this);
    trackedTouch_ = Weak<UITouch>{&touch};
    isTouchInside_ = true;
    setHighlighted(true);
    sendActions(UIControlEvents::touchDown);
}

void UIControl::setTouchInside(bool inside) {
    if (inside == isTouchInside_) return;
    isTouchInside_ = inside;
    setHighlighted(inside);
    sendActions(inside ? UIControlEvents::touchDragEnter : UIControlEvents::touchDragExit);
}

void UIControl::touchesMoved(UITouch& touch) {
    if (!tracks(touch)) return;
    auto const self = strong(*this);
    auto const reach = bounds().insetBy(-touchTolerance, -touchTolerance);
    setTouchInside(reach.contains(touch.locationIn(*this)));
    if (!tracks(touch)) return;
    sendActions(isTouchInside_ ? UIControlEvents::touchDragInside : UIControlEvents::touchDragOutside);
}

void UIControl::touchesEnded(UITouch& touch) {
    if (!tracks(touch)) return;
    auto const reach = bounds().insetBy(-touchTolerance, -touchTolerance);
    bool const inside = reach.contains(touch.locationIn(*this));
    endTracking(inside ? releaseInsideEvents() : UIControlEvents::touchUpOutside);
}

void UIControl::touchesCancelled(UITouch& touch) {
    if (tracks(touch)) endTracking(UIControlEvents::touchCancel);
}

void UIControl::endTracking(UIControlEvents events) {
    auto const self = strong(*this);
    trackedTouch_ = nullptr;
    setHighlighted(false);
    // An override of setHighlighted may have disabled the control, which then sends nothing.
    if (!isEnabled_) return;
    // Each event is sent by itself: who listens to two of them is called twice.
    for (auto rest = static_cast<unsigned>(events); rest != 0; rest &= rest - 1)
        sendActions(static_cast<UIControlEvents>(rest & -rest));
}

} // namespace trelundo
