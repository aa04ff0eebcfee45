#include "trelundo/platform/uikit/views/UIScreen.h"
#include "trelundo/platform/uikit/views/UIView.h"
#include "trelundo/platform/uikit/views/ViewOwner.h"
#include "trelundo/platform/uikit/views/internal/ShownWindows.h"

namespace trelundo {

// Traits.

/// What a view outside any window has reason to expect.
UITraitCollection const& UIView::predictedTraits() {
    if (auto const* window = ShownWindows::current().keyAsView) return window->traitCollection();
    static UITraitCollection screenTraits;
    screenTraits = UIScreen::main().traitCollection();
    return screenTraits;
}

UITraitCollection const& UIView::traitCollection() const {
    for (auto const* view = this; view; view = view->superview_) {
        if (view->traitsOverride_) return *view->traitsOverride_;
    }
    if (window_) return window_->traitCollection();
    return lastTraits_ ? *lastTraits_ : predictedTraits();
}

UIResponder* UIView::nextResponder() const {
    if (owner_) return owner_;
    return superview_;
}

/// Parents hear of new traits before their children, a controller before its view.
void UIView::traitsDidPropagate() {
    auto const self = strong(*this);
    auto const traits = traitCollection();
    if (owner_) owner_->viewTraitsWillChange(traits);
    reportTraits(traits);
    auto const children = subviews_;
    for (auto const& child : children) {
        if (child->superview_ == this && child->window_) child->traitsDidPropagate();
    }
}

/// What is measured in whole pixels is measured anew.
void UIView::displayScaleDidChange() {
    invalidateIntrinsicContentSize();
    setNeedsLayout();
    setNeedsDisplay();
}

void UIView::reportTraits(UITraitCollection const& traits) {
    if (lastTraits_ == traits) return;
    auto const previous = std::exchange(lastTraits_, traits);
    UITraitScope const scope(traits);
    layer_->setContentsScale(traits.displayScale);
    if (previous && previous->displayScale != traits.displayScale) displayScaleDidChange();
    if (previous && previous->layoutDirection != traits.layoutDirection) directionDidChange();
    if (appearanceStyle_ != traits.userInterfaceStyle) {
        appearanceStyle_ = traits.userInterfaceStyle;
        appearanceDidChange();
    }
    traitCollectionDidChange(previous ? &*previous : nullptr);
}

void UIView::appearanceDidChange() {
    if (backgroundColor_ && backgroundColor_->isDynamic()) backgroundColorDidResolve();
    setNeedsDisplay();
}

// Direction.

UIUserInterfaceLayoutDirection UIView::userInterfaceLayoutDirection(UISemanticContentAttribute attribute) {
    switch (attribute) {
    case UISemanticContentAttribute::unspecified:
        return UIScreen::main().userInterfaceLayoutDirection();
    case UISemanticContentAttribute::forceRightToLeft:
        return UIUserInterfaceLayoutDirection::rightToLeft;
    default:
        return UIUserInterfaceLayoutDirection::leftToRight;
    }
}

UIUserInterfaceLayoutDirection UIView::effectiveUserInterfaceLayoutDirection() const {
    if (semanticContentAttribute_ != UISemanticContentAttribute::unspecified)
        return userInterfaceLayoutDirection(semanticContentAttribute_);
    return traitCollection().layoutDirection == UITraitLayoutDirection::rightToLeft
               ? UIUserInterfaceLayoutDirection::rightToLeft
               : UIUserInterfaceLayoutDirection::leftToRight;
}

void UIView::setSemanticContentAttribute(UISemanticContentAttribute attribute) {
    bool const wasRightToLeft = isRightToLeft();
    semanticContentAttribute_ = attribute;
    if (isRightToLeft() != wasRightToLeft) directionDidChange();
}

/// Leading and trailing have changed sides, for the view's own contents and for its place among its siblings.
void UIView::directionDidChange() {
    setNeedsUpdateConstraints();
    setNeedsLayout();
    setNeedsDisplay();
    if (superview_) superview_->setNeedsLayout();
}

// Tint.

/// The nearest view, from this one upward, with a tint of its own; null where the default counts.
UIView const* UIView::tintSource() const {
    auto const* view = this;
    while (view && !view->tintColor_) view = view->superview_;
    return view;
}

bool UIView::isTintDimmed() const {
    for (auto const* view = this; view; view = view->superview_) {
        if (view->tintAdjustmentMode_ == UIViewTintAdjustmentMode::normal) return false;
        if (view->tintAdjustmentMode_ == UIViewTintAdjustmentMode::dimmed ||
            view->isDimmedBehindPresentation_)
            return true;
    }
    return false;
}

UIColor UIView::tintColor() const {
    auto const* source = tintSource();
    auto color = source ? *source->tintColor_ : UIColor::systemBlue();
    if (!isTintDimmed()) return color;
    auto const resolved = color.cgColor(traitCollection());
    double const luminance = 0.2126 * resolved.red + 0.7152 * resolved.green + 0.0722 * resolved.blue;
    return UIColor::gray(luminance, resolved.alpha);
}

void UIView::setTintColor(std::optional<UIColor> color) {
    tintColor_ = std::move(color);
    tintDidPropagate(false);
}

UIViewTintAdjustmentMode UIView::tintAdjustmentMode() const {
    if (tintAdjustmentMode_ != UIViewTintAdjustmentMode::automatic) return tintAdjustmentMode_;
    return isTintDimmed() ? UIViewTintAdjustmentMode::dimmed : UIViewTintAdjustmentMode::automatic;
}

void UIView::setTintAdjustmentMode(UIViewTintAdjustmentMode mode) {
    tintAdjustmentMode_ = mode;
    tintDidPropagate(true);
}

void UIView::setDimmedBehindPresentation(bool dimmed) {
    if (isDimmedBehindPresentation_ == dimmed) return;
    isDimmedBehindPresentation_ = dimmed;
    tintDidPropagate(true);
}

/// A view with a tint of its own hides a change of colour from its descendants, but not one of dimming.
void UIView::tintDidPropagate(bool dimmingChanged) {
    tintColorDidChange();
    auto const children = subviews_;
    for (auto const& child : children) {
        if (dimmingChanged || !child->tintColor_) child->tintDidPropagate(dimmingChanged);
    }
}

} // namespace trelundo
