#pragma once

#include "trelundo/platform/uikit/Forward.h"

#include <utility>
#include <vector>

namespace trelundo {

/// Lends the views of a subtree to another layout engine for a while; the one that they belong to finds them
/// as they were.
class FittingScope {
public:
    explicit FittingScope(UIView& root);
    ~FittingScope();
    FittingScope(FittingScope const&) = delete;
    FittingScope& operator=(FittingScope const&) = delete;

private:
    struct Place {
        LayoutNode* node;
        LayoutEngine* engine;
        int slot;
    };

    void takeFrom(UIView& view);

    UIView& root_;
    std::vector<Place> places_;
    std::vector<std::pair<int*, int>> numbers_;
};

} // namespace trelundo
