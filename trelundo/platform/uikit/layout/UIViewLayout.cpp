#include "trelundo/platform/uikit/views/UIView.h"

#include "trelundo/platform/uikit/layout/UILayoutGuide.h"
#include "trelundo/platform/uikit/layout/internal/Autoresizing.h"
#include "trelundo/platform/uikit/layout/internal/LayoutEngine.h"
#include "trelundo/platform/uikit/layout/internal/LayoutPass.h"
#include "trelundo/platform/uikit/views/ViewOwner.h"

namespace trelundo {

namespace {

std::size_t index(NSLayoutConstraintAxis axis) { return static_cast<std::size_t>(axis); }

/// The engine in which the view has a box, so that it must hear of changes; null otherwise.
LayoutEngine* interestedEngine(LayoutNode const* node) {
    return node && node->slot >= 0 ? node->engine : nullptr;
}

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
