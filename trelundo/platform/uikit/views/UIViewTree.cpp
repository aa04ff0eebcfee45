#include "trelundo/platform/foundation/Log.h"
#include "trelundo/platform/uikit/views/UIView.h"

#include <algorithm>

namespace trelundo {

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
