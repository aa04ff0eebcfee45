#include "trelundo/platform/uikit/layout/UILayoutGuide.h"
#include "trelundo/platform/uikit/layout/internal/LayoutEngine.h"
#include "trelundo/platform/uikit/views/UIView.h"
#include "trelundo/platform/uikit/views/ViewOwner.h"

namespace trelundo {

namespace {

/// Side margins of a controller's root view are at least this, in points.
double systemMinimumMargin(double viewWidth) { return viewWidth > 400 ? 20 : 16; }

/// How far the safe area's edge lies inside a view that reaches from `start` to `end`, counted from its
/// start.
double overlap(double barLength, double start, double end) {
    return barLength > 0 ? std::clamp(barLength - start, 0.0, std::max(end - start, 0.0)) : 0;
}

UIEdgeInsets insetsFor(CGRect const& view, CGSize const& window, UIEdgeInsets const& safeArea) {
    if (!view.intersects({{}, window})) return {};
    return {.top = overlap(safeArea.top, view.minY(), view.maxY()),
            .left = overlap(safeArea.left, view.minX(), view.maxX()),
            .bottom = overlap(safeArea.bottom, window.height - view.maxY(), window.height - view.minY()),
            .right = overlap(safeArea.right, window.width - view.maxX(), window.width - view.minX())};
}

} // namespace

// Safe area.

UIEdgeInsets UIView::safeAreaInsets() const { return window_ ? safeAreaInsets_ : UIEdgeInsets{}; }

bool UIView::updateSafeAreaInsets() {
    auto const insets = window_ ? insetsFor(convertRectTo(bounds(), nullptr), window_->bounds().size,
                                            window_->windowSafeAreaInsets())
                                : UIEdgeInsets{};
    if (insets == safeAreaInsets_) return false;
    safeAreaInsets_ = insets;
    marginsDidChange();
    auto const self = strong(*this);
    safeAreaInsetsDidChange();
    if (owner_) strong(*owner_)->viewSafeAreaInsetsDidChange();
    return true;
}

// Margins.

UIEdgeInsets UIView::layoutMargins() const {
    auto margins = layoutMargins_;
    if (marginsAreDirectional_ && isRightToLeft()) std::swap(margins.left, margins.right);
    if (owner_) {
        double const minimum = systemMinimumMargin(bounds().size.width);
        if (!layoutMarginsWereSet_) margins = {};
        margins.left = std::max(margins.left, minimum);
        margins.right = std::max(margins.right, minimum);
    }
    if (!insetsLayoutMarginsFromSafeArea_) return margins;
    auto const safeArea = safeAreaInsets();
    return {margins.top + safeArea.top, margins.left + safeArea.left, margins.bottom + safeArea.bottom,
            margins.right + safeArea.right};
}

void UIView::setLayoutMargins(UIEdgeInsets margins) {
    layoutMargins_ = margins;
    layoutMarginsWereSet_ = true;
    marginsAreDirectional_ = false;
    marginsDidChange();
}

NSDirectionalEdgeInsets UIView::directionalLayoutMargins() const {
    auto const margins = layoutMargins();
    bool const mirrored = isRightToLeft();
    return {margins.top, mirrored ? margins.right : margins.left, margins.bottom,
            mirrored ? margins.left : margins.right};
}

void UIView::setDirectionalLayoutMargins(NSDirectionalEdgeInsets margins) {
    layoutMargins_ = {margins.top, margins.leading, margins.bottom, margins.trailing};
    layoutMarginsWereSet_ = true;
    marginsAreDirectional_ = true;
    marginsDidChange();
}

void UIView::setInsetsLayoutMarginsFromSafeArea(bool insets) {
    insetsLayoutMarginsFromSafeArea_ = insets;
    marginsDidChange();
}

/// The safe area's or the margins' guides are elsewhere now.
void UIView::marginsDidChange() {
    if (layoutNode_ && layoutNode_->slot >= 0) layoutNode_->engine->insetsDidChange(*layoutNode_);
    setNeedsLayout();
}

// Guides.

Ref<UILayoutGuide> UIView::safeAreaLayoutGuide() {
    if (!safeAreaGuide_) safeAreaGuide_ = makeInsetGuide("safeAreaLayoutGuide", true);
    return safeAreaGuide_;
}

Ref<UILayoutGuide> UIView::layoutMarginsGuide() {
    if (!marginsGuide_) marginsGuide_ = makeInsetGuide("layoutMarginsGuide", false);
    return marginsGuide_;
}

Ref<UILayoutGuide> UIView::makeInsetGuide(std::string identifier, bool followsSafeArea) {
    auto guide = make<UILayoutGuide>(std::move(identifier));
    guide->owningView_ = this;
    guide->kind_ = followsSafeArea ? UILayoutGuide::Kind::safeArea : UILayoutGuide::Kind::layoutMargins;
    LayoutNode::of(*this); // takes the guide's owner away when the view is destroyed
    return guide;
}

void UIView::addLayoutGuide(Ref<UILayoutGuide> guide) {
    if (!guide || guide->kind_ != UILayoutGuide::Kind::constrained || guide->owningView_ == this) return;
    if (guide->owningView_) guide->owningView_->removeLayoutGuide(*guide);
    guide->owningView_ = this;
    LayoutNode::of(*this);
    layoutGuides_.push_back(std::move(guide));
}

void UIView::removeLayoutGuide(UILayoutGuide& guide) {
    if (guide.owningView_ != this || guide.kind_ != UILayoutGuide::Kind::constrained) return;
    auto const self = strong(guide);
    auto const mentions = LayoutNode::of(*this).mentions;
    for (auto* constraint : mentions)
        if (constraint->first_.guide == &guide || constraint->second_.guide == &guide)
            constraint->setActive(false);
    if (auto* engine = LayoutEngine::existing(*this)) engine->removeGuide(guide);
    guide.owningView_ = nullptr;
    std::erase_if(layoutGuides_, [&guide](auto const& held) { return held.get() == &guide; });
}

} // namespace trelundo
