#include "trelundo/platform/uikit/layout/internal/FittingScope.h"

#include "trelundo/platform/uikit/layout/UILayoutGuide.h"
#include "trelundo/platform/uikit/layout/internal/LayoutEngine.h"
#include "trelundo/platform/uikit/views/UIView.h"

namespace trelundo {

FittingScope::FittingScope(UIView& root)
    : root_(root) {
    takeFrom(root);
}

void FittingScope::takeFrom(UIView& view) {
    if (auto* node = LayoutNode::existing(view)) {
        places_.push_back({node, std::exchange(node->engine, nullptr), std::exchange(node->slot, -1)});
        for (auto const& guide : view.layoutGuides_)
            numbers_.emplace_back(&guide->layoutSlot_, std::exchange(guide->layoutSlot_, -1));
        for (auto const& constraint : view.constraints_)
            numbers_.emplace_back(&constraint->engineId_, std::exchange(constraint->engineId_, -1));
    }
    for (auto const& child : view.subviews_) takeFrom(*child);
}

FittingScope::~FittingScope() {
    for (auto const& place : places_) {
        place.node->engine = place.engine;
        place.node->slot = place.slot;
    }
    for (auto const& [number, value] : numbers_) *number = value;
    if (auto* engine = LayoutEngine::existing(root_)) engine->restoreWidths(root_);
}

} // namespace trelundo
