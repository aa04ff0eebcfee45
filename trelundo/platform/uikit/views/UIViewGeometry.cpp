#include "trelundo/platform/uikit/views/UIView.h"

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

} // namespace trelundo
