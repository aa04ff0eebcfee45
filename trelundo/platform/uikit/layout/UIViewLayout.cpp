#include "trelundo/platform/uikit/layout/UILayoutGuide.h"
#include "trelundo/platform/uikit/layout/internal/Autoresizing.h"
#include "trelundo/platform/uikit/layout/internal/LayoutEngine.h"
#include "trelundo/platform/uikit/layout/internal/LayoutPass.h"
#include "trelundo/platform/uikit/views/UIView.h"

namespace trelundo {

namespace {

std::size_t index(NSLayoutConstraintAxis axis) { return static_cast<std::size_t>(axis); }

/// The engine in which the view has a box, so that it must hear of changes; null otherwise.
LayoutEngine* interestedEngine(LayoutNode const* node) {
    return node && node->slot >= 0 ? node->engine : nullptr;
}

} // namespace

// Marks.

void UIView::markSubtreeForLayout() {
    for (auto* view = this; view; view = view->superview_) view->subtreeNeedsLayout_ = true;
}

void UIView::setNeedsLayout() {
    needsLayout_ = true;
    markSubtreeForLayout();
}

void UIView::setNeedsUpdateConstraints() {
    needsUpdateConstraints_ = true;
    for (auto* view = this; view; view = view->superview_) view->subtreeNeedsConstraints_ = true;
    markSubtreeForLayout();
}

void UIView::layoutIfNeeded() { LayoutPass::run(*this); }

void UIView::layoutSubviews() {
    auto* const engine = LayoutEngine::existing(*this);
    if (!engine) return;
    engine->update();
    engine->applyFrames(*this);
}

// Sizes.

void UIView::invalidateIntrinsicContentSize() {
    if (auto* engine = interestedEngine(layoutNode_.get())) engine->contentDidChange(*layoutNode_);
    if (!superview_ || translatesAutoresizingMask_) return;
    superview_->setNeedsLayout();
    superview_->subviewContentSizeDidChange(*this);
}

UILayoutPriority UIView::contentHuggingPriority(NSLayoutConstraintAxis axis) const {
    return hugging_[index(axis)];
}

void UIView::setContentHuggingPriority(UILayoutPriority priority, NSLayoutConstraintAxis axis) {
    hugging_[index(axis)] = priority;
    contentPriorityDidChange();
}

UILayoutPriority UIView::contentCompressionResistancePriority(NSLayoutConstraintAxis axis) const {
    return compression_[index(axis)];
}

void UIView::setContentCompressionResistancePriority(UILayoutPriority priority, NSLayoutConstraintAxis axis) {
    compression_[index(axis)] = priority;
    contentPriorityDidChange();
}

void UIView::contentPriorityDidChange() {
    if (auto* engine = interestedEngine(layoutNode_.get())) engine->contentPriorityDidChange(*layoutNode_);
    if (superview_) superview_->setNeedsLayout();
}

CGSize UIView::sizeThatFits(CGSize) const { return bounds().size; }

void UIView::sizeToFit() {
    auto const origin = frame().origin;
    setFrame({origin, sizeThatFits(bounds().size)});
}

CGSize UIView::systemLayoutSizeFitting(CGSize target) { return LayoutPass::fittingSize(*this, target); }

void UIView::setTranslatesAutoresizingMaskIntoConstraints(bool translates) {
    if (translates == translatesAutoresizingMask_) return;
    translatesAutoresizingMask_ = translates;
    if (!superview_) return;
    superview_->setNeedsLayout();
    if (auto* engine = interestedEngine(layoutNode_.get()))
        engine->reset();
    else if (auto* treesEngine = LayoutEngine::existing(*this))
        treesEngine->subtreeWasAdded(*this);
}

// Changes of the tree and of geometry.

void UIView::layoutSubviewAdded(UIView& view) {
    laidOutSize_ = bounds().size;
    view.safeAreaIsStale_ = true;
    if (auto const& node = view.layoutNode_) node->ownEngine.reset();
    if (auto* engine = LayoutEngine::existing(*this)) engine->subtreeWasAdded(view);
    setNeedsLayout();
    if (!view.subtreeNeedsConstraints_) return;
    for (auto* step = this; step; step = step->superview_) step->subtreeNeedsConstraints_ = true;
}

void UIView::layoutSubviewWillBeRemoved(UIView& view) {
    view.dropConstraintsAcross(view);
    if (auto* engine = LayoutEngine::existing(*this)) engine->subtreeWillBeRemoved(view);
    setNeedsLayout();
}

/// Drops what ties this view or a descendant to something outside `border`.
void UIView::dropConstraintsAcross(UIView const& border) {
    if (layoutNode_) {
        auto const mentions = layoutNode_->mentions;
        for (auto* constraint : mentions)
            if (!constraint->owner_->isDescendantOf(border)) constraint->setActive(false);
    }
    for (auto const& child : subviews_) child->dropConstraintsAcross(border);
}

void UIView::layoutSizeDidChange() {
    auto const before = std::exchange(laidOutSize_, bounds().size);
    auto const children = subviews_;
    for (auto const& child : children)
        if (child->translatesAutoresizingMask_ && child->superview_ == this) child->autoresize(before);
    if (owner_) marginsDidChange();
    setNeedsLayout();
}

/// The frame that the view would have without its transform.
CGRect UIView::untransformedFrame() const {
    auto const size = bounds().size;
    auto const anchor = layer_->anchorPoint();
    auto const position = center();
    return {position.x - anchor.x * size.width, position.y - anchor.y * size.height, size.width, size.height};
}

void UIView::autoresize(CGSize superviewSizeBefore) {
    if (autoresizingMask_ == UIViewAutoresizing::none) return;
    auto const now = superview_->bounds().size;
    double const dx = now.width - superviewSizeBefore.width;
    double const dy = now.height - superviewSizeBefore.height;
    auto const old = untransformedFrame();
    auto const x = autoresizingShares(autoresizingMask_, old, superviewSizeBefore, false);
    auto const y = autoresizingShares(autoresizingMask_, old, superviewSizeBefore, true);
    CGRect const resized{old.origin.x + x.position * dx, old.origin.y + y.position * dy,
                         std::max(old.size.width + x.length * dx, 0.0),
                         std::max(old.size.height + y.length * dy, 0.0)};
    if (resized == old) return;
    auto const anchor = layer_->anchorPoint();
    setBounds({bounds().origin, resized.size});
    setCenter({resized.origin.x + anchor.x * resized.size.width,
               resized.origin.y + anchor.y * resized.size.height});
}

void UIView::layoutFrameWasSet() {
    if (auto* engine = interestedEngine(layoutNode_.get())) engine->frameDidChange(*layoutNode_);
    if (safeAreaIsStale_ && subtreeNeedsLayout_) return;
    safeAreaIsStale_ = true;
    markSubtreeForLayout();
}

// Anchors.

std::string UIView::layoutName() const {
    return accessibilityIdentifier_.empty() ? className() : accessibilityIdentifier_;
}

NSLayoutXAxisAnchor UIView::leadingAnchor() { return {strong<NSObject>(*this), NSLayoutAttribute::leading}; }
NSLayoutXAxisAnchor UIView::trailingAnchor() {
    return {strong<NSObject>(*this), NSLayoutAttribute::trailing};
}
NSLayoutXAxisAnchor UIView::leftAnchor() { return {strong<NSObject>(*this), NSLayoutAttribute::left}; }
NSLayoutXAxisAnchor UIView::rightAnchor() { return {strong<NSObject>(*this), NSLayoutAttribute::right}; }
NSLayoutXAxisAnchor UIView::centerXAnchor() { return {strong<NSObject>(*this), NSLayoutAttribute::centerX}; }
NSLayoutYAxisAnchor UIView::topAnchor() { return {strong<NSObject>(*this), NSLayoutAttribute::top}; }
NSLayoutYAxisAnchor UIView::bottomAnchor() { return {strong<NSObject>(*this), NSLayoutAttribute::bottom}; }
NSLayoutYAxisAnchor UIView::centerYAnchor() { return {strong<NSObject>(*this), NSLayoutAttribute::centerY}; }
NSLayoutYAxisAnchor UIView::firstBaselineAnchor() {
    return {strong<NSObject>(*this), NSLayoutAttribute::firstBaseline};
}
NSLayoutYAxisAnchor UIView::lastBaselineAnchor() {
    return {strong<NSObject>(*this), NSLayoutAttribute::lastBaseline};
}
NSLayoutDimension UIView::widthAnchor() { return {strong<NSObject>(*this), NSLayoutAttribute::width}; }
NSLayoutDimension UIView::heightAnchor() { return {strong<NSObject>(*this), NSLayoutAttribute::height}; }

} // namespace trelundo
