#include "trelundo/platform/uikit/views/UIView.h"

#include "trelundo/platform/uikit/views/UIScreen.h"

namespace trelundo {

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
    if (isHidden() || !userInteractionEnabled_ || alpha() < 0.01 || refusesTouches() || !pointInside(point))
        return nullptr;
    for (auto child = subviews_.rbegin(); child != subviews_.rend(); ++child) {
        if (auto hit = (*child)->hitTest((*child)->convertPointFrom(point, this))) return hit;
    }
    return strong(*this);
}

bool UIView::pointInside(CGPoint point) const { return bounds().contains(point); }

} // namespace trelundo
