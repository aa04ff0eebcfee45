#include "trelundo/platform/uikit/layout/internal/LayoutPass.h"

#include "trelundo/platform/foundation/Log.h"
#include "trelundo/platform/uikit/layout/internal/FittingScope.h"
#include "trelundo/platform/uikit/layout/internal/LayoutEngine.h"
#include "trelundo/platform/uikit/views/UIView.h"
#include "trelundo/platform/uikit/views/ViewOwner.h"

#include <set>
#include <string>

namespace trelundo {

namespace {

/// A layout that marks itself again so often does so forever.
constexpr int layoutRounds = 30;
constexpr int constraintRounds = 10;

/// Once for a class: the next frame would only say it again.
void warnOfUnrest(UIView const& view) {
    static std::set<std::string> told;
    if (!told.insert(view.className()).second) return;
    logWarning("Layout: " + view.className() + " was still marked after " + std::to_string(layoutRounds) +
               " rounds; the rest waits for the next pass.");
}

} // namespace

void LayoutPass::run(UIView& view) {
    auto const self = strong(view);
    for (int round = 0; round < layoutRounds; ++round) {
        auto const root = strong(LayoutEngine::rootOf(view));
        auto& engine = LayoutEngine::of(*root);
        updateConstraints(*root);
        checkWindowSafeArea(*root, engine);
        engine.update();
        auto start = self;
        while (start->superview_ && start->superview_->needsLayout_) start = strong(*start->superview_);
        if (!start->subtreeNeedsLayout_) return;
        visit(*start, false);
    }
    warnOfUnrest(view);
}

void LayoutPass::updateConstraints(UIView& root) {
    for (int round = 0; round < constraintRounds && root.subtreeNeedsConstraints_; ++round)
        updateConstraintsBelow(root);
}

void LayoutPass::updateConstraintsBelow(UIView& view) {
    if (!view.subtreeNeedsConstraints_) return;
    view.subtreeNeedsConstraints_ = false;
    auto const children = view.subviews_;
    for (auto const& child : children) updateConstraintsBelow(*child);
    if (!std::exchange(view.needsUpdateConstraints_, false)) return;
    auto const* node = LayoutNode::existing(view);
    if (node && !node->mentions.empty()) {
        if (auto* engine = LayoutEngine::existing(view)) engine->directionDidChange(*node);
    }
    view.updateConstraints();
}

void LayoutPass::checkWindowSafeArea(UIView& root, LayoutEngine& engine) {
    auto const insets = root.window_ ? root.window_->windowSafeAreaInsets() : UIEdgeInsets{};
    if (std::exchange(engine.lastWindowSafeArea, insets) != insets) {
        root.safeAreaIsStale_ = true;
        root.markSubtreeForLayout();
    }
    if (root.subtreeNeedsLayout_) updateKnownSafeAreas(root, false);
}

/// Before solving, for the views from the root down that no constraint places: their frames are final
/// already.
void LayoutPass::updateKnownSafeAreas(UIView& view, bool superviewIsStale) {
    bool const isStale = view.safeAreaIsStale_ || superviewIsStale;
    if (isStale) view.updateSafeAreaInsets();
    if (!isStale && !view.subtreeNeedsLayout_) return;
    auto const children = view.subviews_;
    for (auto const& child : children)
        if (child->translatesAutoresizingMask_) updateKnownSafeAreas(*child, isStale);
}

void LayoutPass::visit(UIView& view, bool superviewIsStale) {
    bool const isStale = std::exchange(view.safeAreaIsStale_, false) || superviewIsStale;
    if (isStale) view.updateSafeAreaInsets();
    if (!isStale && !view.subtreeNeedsLayout_) return;
    view.subtreeNeedsLayout_ = false;
    if (view.needsLayout_ && !view.isLayingOut_) layOut(view);
    auto const children = view.subviews_;
    for (auto const& child : children)
        if (child->superview_ == &view) visit(*child, isStale);
}

void LayoutPass::layOut(UIView& view) {
    auto const self = strong(view);
    auto const owner = view.owner_ ? strong(*view.owner_) : Ref<ViewOwner>{};
    view.needsLayout_ = false;
    view.isLayingOut_ = true;
    if (owner) owner->viewWillLayoutSubviews();
    view.layoutSubviews();
    if (owner) owner->viewDidLayoutSubviews();
    view.isLayingOut_ = false;
    if (view.needsLayout_) view.markSubtreeForLayout();
}

CGSize LayoutPass::fittingSize(UIView& view, CGSize target) {
    updateConstraints(LayoutEngine::rootOf(view));
    FittingScope const scope(view);
    return LayoutEngine(view, LayoutEngine::Purpose::fitting).fittingSize(target);
}

} // namespace trelundo
