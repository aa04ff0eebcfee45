#pragma once

#include "trelundo/platform/uikit/collection/UICollectionView.h"

#include <map>
#include <optional>

namespace trelundo {

/// What a collection view keeps between layouts: counts and the cells of the moment, nothing per item.
struct UICollectionView::State {
    using Cells = std::vector<Ref<UICollectionViewCell>>;
    struct ScrollRequest {
        IndexPath indexPath;
        UICollectionViewScrollPosition position;
    };

    std::map<std::string, std::function<Ref<UICollectionViewCell>(CGRect)>> factories;
    std::map<std::string, Cells> pool; // by reuse identifier
    std::map<int, Ref<UICollectionViewCell>> shown;
    Cells handedOut; // dequeued and not yet returned by the data source

    std::optional<int> count;
    bool layoutIsStale = true;
    CGSize laidOutSize; // zero before the first layout
    std::optional<ScrollRequest> pendingScroll;

    bool updating = false;
    bool reloadAfterUpdate = false;
    int displayLink = 0;
    bool following = false;

    int selected = -1;
    int touched = -1;
};

} // namespace trelundo
