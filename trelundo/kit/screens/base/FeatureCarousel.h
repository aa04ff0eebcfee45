#pragma once

#include "trelundo/kit/controls/FeatureCell.h"
#include "trelundo/platform/uikit/collection/UICollectionView.h"

#include <string>
#include <utility>
#include <vector>

namespace trelundo {

/// A feature's caption and the name of the host's picture.
using Feature = std::pair<std::string, std::string>;

/// The endless strip of feature tiles: fills its cells, drifts about a point a frame and can be dragged
/// meanwhile. The screen owns it, sets the features (at least one, else the first tile ends the program),
/// shows its collection view, and starts and stops the drift as it appears and disappears.
class FeatureCarousel : public NSObject, public UICollectionViewDataSource, public UICollectionViewDelegate {
public:
    static constexpr int itemCount = 1'000'000;
    static constexpr double defaultSpacing = 10; // points between items where a screen asks for nothing else

    struct Style {
        CGSize itemSize;
        double lineSpacing; // points
        double interitemSpacing;
        UIEdgeInsets sectionInset;
        double height; // of the whole strip
    };

    std::vector<Feature> const& features() const { return features_; }
    void setFeatures(std::vector<Feature> features) { features_ = std::move(features); }

    /// A strip of cells of class Cell, constrained to its height.
    template <std::derived_from<FeatureCell> Cell>
    Ref<UICollectionView> makeCollectionView(Style const& style) {
        auto view = makeStrip(style);
        view->template registerClass<Cell>("cell");
        return view;
    }
    void scrollToFirstItem();

    /// Drifts until stop(), or until the carousel is gone. Starting again while an old chain is still ending
    /// lets both run for a moment, which does no harm.
    void start();
    void stop() { stop_ = true; }
    bool isStopped() const { return stop_; }

    int numberOfItemsInSection(UICollectionView& collectionView, int section) override;
    Ref<UICollectionViewCell> cellForItemAt(UICollectionView& collectionView, IndexPath indexPath) override;

private:
    Ref<UICollectionView> makeStrip(Style const& style);
    void drift();

    std::vector<Feature> features_;
    bool stop_ = false;
    Ref<UICollectionView> collectionView_;
};

} // namespace trelundo
