#include "trelundo/platform/uikit/layout/internal/LayoutNode.h"

#include "trelundo/platform/uikit/layout/UILayoutGuide.h"
#include "trelundo/platform/uikit/layout/internal/LayoutEngine.h" // IWYU pragma: keep
#include "trelundo/platform/uikit/views/UIView.h"

namespace trelundo {

LayoutNode::LayoutNode(UIView& owner)
    : view(owner) {}

/// Runs while the view is being destroyed: constraints that outlive it are no longer active.
LayoutNode::~LayoutNode() {
    ownEngine.reset();
    for (auto const& guide : view.layoutGuides_) guide->owningView_ = nullptr;
    for (auto const& guide : {view.safeAreaGuide_, view.marginsGuide_})
        if (guide) guide->owningView_ = nullptr;
    for (auto const& constraint : view.constraints_) constraint->detachFromOwner();
}

LayoutNode& LayoutNode::of(UIView& view) {
    if (!view.layoutNode_) view.layoutNode_ = std::make_shared<LayoutNode>(view);
    return *view.layoutNode_;
}

LayoutNode* LayoutNode::existing(UIView const& view) { return view.layoutNode_.get(); }

} // namespace trelundo
