#include "trelundo/platform/uikit/views/UIView.h"

#include "trelundo/platform/foundation/Log.h"
#include "trelundo/platform/uikit/views/UIScreen.h"

#include <algorithm>
#include <ranges>

namespace trelundo {

namespace {

bool isTranslation(CGAffineTransform const& t) { return t.a == 1 && t.b == 0 && t.c == 0 && t.d == 1; }

CGAffineTransform inverse(CGAffineTransform const& t) {
    return isTranslation(t) ? CGAffineTransform::translation(-t.tx, -t.ty) : t.inverted();
}

CGRect applied(CGAffineTransform const& t, CGRect const& rect) {
    return isTranslation(t) ? rect.offsetBy(t.tx, t.ty) : t.apply(rect);
}

} // namespace

UIView::UIView(CGRect frame)
    : UIView(frame, make<CALayer>()) {}

UIView::UIView(CGRect frame, Ref<CALayer> layer)
    : layer_(std::move(layer))
    , appearanceStyle_(predictedTraits().userInterfaceStyle) {
    layer_->setDelegate(this);
    layer_->setContentsScale(UIScreen::main().scale());
    layer_->setFrame(frame);
}

UIView::~UIView() {
    for (auto const& view : subviews_) {
        view->superview_ = nullptr;
        view->layer_->removeFromSuperlayer();
    }
}

void UIView::setAlpha(double alpha) {
    if (alpha != layer_->opacity()) noteAnimatedChange();
    layer_->setOpacity(alpha);
}

void UIView::setHidden(bool hidden) {
    bool const changes = hidden != isHidden();
    layer_->setHidden(hidden);
    if (!changes) return;
    if (superview_) superview_->subviewHiddenDidChange(*this);
}

void UIView::setBackgroundColor(std::optional<UIColor> color) {
    backgroundColor_ = std::move(color);
    backgroundColorDidResolve();
}

void UIView::backgroundColorDidResolve() {
    std::optional<CGColor> resolved;
    if (backgroundColor_) resolved = backgroundColor_->cgColor(traitCollection());
    if (resolved != layer_->backgroundColor()) noteAnimatedChange();
    layer_->setBackgroundColor(resolved);
}

void UIView::setContentMode(UIViewContentMode mode) {
    contentMode_ = mode;
    setNeedsDisplay();
}

void UIView::setNeedsDisplay() { layer_->setNeedsDisplay(); }

void UIView::drawLayer(CALayer& /*layer*/, Canvas& canvas) {
    auto const area = bounds();
    if (area.isEmpty()) return;
    UITraitScope const scope(traitCollection());
    draw(area, canvas);
}

Ref<UIView> UIView::hitTest(CGPoint point) {
    if (isHidden() || !isUserInteractionEnabled_ || alpha() < 0.01 || refusesTouches() || !pointInside(point))
        return nullptr;
    for (auto const& child : std::views::reverse(subviews_)) {
        if (auto hit = child->hitTest(child->convertPointFrom(point, this))) return hit;
    }
    return passesTouches_ ? nullptr : strong(*this);
}

bool UIView::pointInside(CGPoint point) const { return bounds().contains(point); }

// Geometry.

CGRect UIView::frame() const { return layer_->frame(); }

void UIView::setFrame(CGRect frame) {
    auto const oldFrame = layer_->frame();
    auto const oldSize = layer_->bounds().size;
    if (frame != oldFrame) noteAnimatedChange();
    layer_->setFrame(frame);
    if (layer_->bounds().size != oldSize) layoutSizeDidChange();
    layoutFrameWasSet();
}

CGRect UIView::bounds() const { return layer_->bounds(); }

void UIView::setBounds(CGRect bounds) {
    auto const old = layer_->bounds();
    if (bounds != old) noteAnimatedChange();
    layer_->setBounds(bounds);
    if (bounds.size == old.size) return;
    layoutSizeDidChange();
    layoutFrameWasSet();
}

CGPoint UIView::center() const { return layer_->position(); }

void UIView::setCenter(CGPoint center) {
    if (center != layer_->position()) noteAnimatedChange();
    layer_->setPosition(center);
    layoutFrameWasSet();
}

CGAffineTransform UIView::transform() const { return layer_->transform(); }

void UIView::setTransform(CGAffineTransform transform) {
    if (transform != layer_->transform()) noteAnimatedChange();
    layer_->setTransform(transform);
}

CGAffineTransform UIView::transformToSuperview() const {
    auto const area = layer_->bounds();
    auto const anchor = layer_->anchorPoint();
    CGPoint const pivot{area.origin.x + anchor.x * area.size.width,
                        area.origin.y + anchor.y * area.size.height};
    auto const position = layer_->position();
    auto const turned = layer_->transform();
    if (turned.isIdentity())
        return CGAffineTransform::translation(position.x - pivot.x, position.y - pivot.y);
    return CGAffineTransform::translation(-pivot.x, -pivot.y)
        .concatenating(turned)
        .concatenating(CGAffineTransform::translation(position.x, position.y));
}

/// From this view's coordinates to those of `view`, or of the root of the tree when it is null.
CGAffineTransform UIView::transformTo(UIView const* view) const {
    CGAffineTransform result;
    for (auto const* step = this; step->superview_; step = step->superview_) {
        if (step == view) return result;
        auto const up = step->transformToSuperview();
        result = isTranslation(result) && isTranslation(up)
                     ? CGAffineTransform::translation(result.tx + up.tx, result.ty + up.ty)
                     : result.concatenating(up);
    }
    return view && view->superview_ ? result.concatenating(inverse(view->transformTo(nullptr))) : result;
}

CGPoint UIView::convertPointTo(CGPoint point, UIView const* view) const {
    return transformTo(view).apply(point);
}

CGPoint UIView::convertPointFrom(CGPoint point, UIView const* view) const {
    if (view && view == superview_) return inverse(transformToSuperview()).apply(point);
    return view ? view->convertPointTo(point, this) : inverse(transformTo(nullptr)).apply(point);
}

CGRect UIView::convertRectTo(CGRect rect, UIView const* view) const {
    return applied(transformTo(view), rect);
}

CGRect UIView::convertRectFrom(CGRect rect, UIView const* view) const {
    return view ? view->convertRectTo(rect, this) : applied(inverse(transformTo(nullptr)), rect);
}

// The tree.

void UIView::addSubview(Ref<UIView> view) { insertSubview(std::move(view), subviews_.size()); }

bool UIView::mayContain(UIView const& view) const {
    if (!isDescendantOf(view)) return true;
    logWarning("A view cannot be added to itself or to one of its own subviews.");
    return false;
}

void UIView::insertSubview(Ref<UIView> view, std::size_t index) {
    if (!view || !mayContain(*view)) return;
    if (view->superview_ == this) return restack(view, index);
    auto const* tintSourceBefore = view->tintSource();
    bool const dimmedBefore = view->isTintDimmed();

    view->willMoveToSuperview(this);
    if (view->window_ != window_) view->announceWindow(window_);
    if (view->superview_) view->superview_->detach(*view);
    place(view, index);
    view->superview_ = this;
    layoutSubviewAdded(*view);
    didAddSubview(*view);
    view->moveToWindow(window_);
    view->didMoveToSuperview();

    bool const dimmingChanged = view->isTintDimmed() != dimmedBefore;
    if (dimmingChanged || view->tintSource() != tintSourceBefore) view->tintDidPropagate(dimmingChanged);
    if (view->window_) view->traitsDidPropagate();
}

void UIView::insertSubviewAbove(Ref<UIView> view, UIView const& sibling) {
    auto const found = std::ranges::find(subviews_, &sibling, &Ref<UIView>::get);
    auto const index = static_cast<std::size_t>(found - subviews_.begin());
    bool const isLower =
        view && view->superview_ == this && std::find(subviews_.begin(), found, view) != found;
    insertSubview(std::move(view), isLower ? index : index + 1);
}

void UIView::insertSubviewBelow(Ref<UIView> view, UIView const& sibling) {
    auto const found = std::ranges::find(subviews_, &sibling, &Ref<UIView>::get);
    auto const index = static_cast<std::size_t>(found - subviews_.begin());
    bool const isLower =
        view && view->superview_ == this && std::find(subviews_.begin(), found, view) != found;
    insertSubview(std::move(view), isLower ? index - 1 : index);
}

void UIView::bringSubviewToFront(UIView& view) {
    if (view.superview_ == this) restack(strong(view), subviews_.size());
}

/// `index` counts the siblings without the view itself.
void UIView::restack(Ref<UIView> const& view, std::size_t index) {
    std::erase(subviews_, view);
    place(view, index);
}

/// Layers that are no view's own lie among the sublayers, so that the layer's index differs from the view's.
void UIView::place(Ref<UIView> const& view, std::size_t index) {
    if (index >= subviews_.size()) {
        subviews_.push_back(view);
        layer_->addSublayer(view->layer_);
        return;
    }
    auto const position = subviews_.begin() + static_cast<std::ptrdiff_t>(index);
    auto const above = std::ranges::find(layer_->sublayers(), (*position)->layer_);
    bool const stoodBelow = std::find(layer_->sublayers().begin(), above, view->layer_) != above;
    auto const layerIndex = above - layer_->sublayers().begin() - (stoodBelow ? 1 : 0);
    subviews_.insert(position, view);
    layer_->insertSublayer(view->layer_, static_cast<std::size_t>(layerIndex));
}

void UIView::detach(UIView& view) {
    willRemoveSubview(view);
    layoutSubviewWillBeRemoved(view);
    view.superview_ = nullptr;
    std::erase_if(subviews_, [&view](Ref<UIView> const& child) { return child.get() == &view; });
}

void UIView::removeFromSuperview() {
    if (!superview_) return;
    auto const self = strong(*this);
    willMoveToSuperview(nullptr);
    if (window_) announceWindow(nullptr);
    if (!superview_) return;
    superview_->detach(*this);
    layer_->removeFromSuperlayer();
    moveToWindow(nullptr);
    didMoveToSuperview();
}

void UIView::announceWindow(UIView* window) {
    willMoveToWindow(window ? window->asWindow() : nullptr);
    auto const children = subviews_;
    for (auto const& child : children) child->announceWindow(window);
}

/// The whole subtree stands in its new window before the first view hears of it.
void UIView::moveToWindow(UIView* window) {
    if (window_ == window) return;
    if (window_) window_->cancelTouchesIn(*this);
    adoptWindow(window);
    reportWindow(window);
}

void UIView::adoptWindow(UIView* window) {
    window_ = window;
    for (auto const& child : subviews_) child->adoptWindow(window);
}

void UIView::reportWindow(UIView const* window) {
    if (window_ != window) return;
    didMoveToWindow();
    auto const children = subviews_;
    for (auto const& child : children) {
        if (child->superview_ == this) child->reportWindow(window);
    }
}

bool UIView::isDescendantOf(UIView const& view) const {
    for (auto const* step = this; step; step = step->superview_) {
        if (step == &view) return true;
    }
    return false;
}

Ref<UIView> UIView::viewWithTag(int tag) {
    if (tag_ == tag) return strong(*this);
    for (auto const& child : subviews_) {
        if (auto found = child->viewWithTag(tag)) return found;
    }
    return nullptr;
}

} // namespace trelundo
