#pragma once

#include "trelundo/platform/uikit/Forward.h"

#include <memory>
#include <vector>

namespace trelundo {

/// What constraint layout keeps of one view. Made when the view first takes part, destroyed with the view.
class LayoutNode {
public:
    explicit LayoutNode(UIView& owner);
    ~LayoutNode();
    LayoutNode(LayoutNode const&) = delete;
    LayoutNode& operator=(LayoutNode const&) = delete;

    static LayoutNode& of(UIView& view);
    /// Null when the view has taken no part yet.
    static LayoutNode* existing(UIView const& view);

    UIView& view;
    LayoutEngine* engine = nullptr;            // where the view has a box; null: nowhere
    int slot = -1;                             // of its box there
    std::unique_ptr<LayoutEngine> ownEngine;   // of the tree whose root the view is
    std::vector<NSLayoutConstraint*> mentions; // active constraints on the view or one of its guides
};

} // namespace trelundo
