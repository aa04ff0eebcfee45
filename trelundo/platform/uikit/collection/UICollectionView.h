#pragma once

#include "trelundo/platform/uikit/collection/UICollectionViewCell.h"
#include "trelundo/platform/uikit/collection/UICollectionViewFlowLayout.h"
#include "trelundo/platform/uikit/collection/UIScrollView.h"

namespace trelundo {

struct IndexPath {
    int section = 0;
    int item = 0;
    auto operator<=>(IndexPath const&) const = default;
};

class UICollectionViewDataSource {
public:
    virtual ~UICollectionViewDataSource() = default;
    virtual int numberOfSections(UICollectionView&) { return 1; }
    virtual int numberOfItemsInSection(UICollectionView& collectionView, int section) = 0;
    /// Must return a cell dequeued from `collectionView`.
    virtual Ref<UICollectionViewCell> cellForItemAt(UICollectionView& collectionView,
                                                    IndexPath indexPath) = 0;
};

class UICollectionViewDelegate : public UIScrollViewDelegate {
public:
    virtual void didSelectItemAt(UICollectionView&, IndexPath) {}
    virtual void willDisplayCell(UICollectionView&, UICollectionViewCell&, IndexPath) {}
    virtual void didEndDisplayingCell(UICollectionView&, UICollectionViewCell&, IndexPath) {}
};

enum class UICollectionViewScrollPosition : unsigned {
    none = 0,
    top = 1,
    centeredVertically = 2,
    bottom = 4,
    left = 8,
    centeredHorizontally = 16,
    right = 32,
};

/// Shows many items with as many cells as fit on the screen; leaving cells are reused. One section.
class UICollectionView : public UIScrollView {
public:
    /// A null layout ends the program.
    UICollectionView(CGRect frame, Ref<UICollectionViewFlowLayout> layout);
    ~UICollectionView() override;

    UICollectionViewFlowLayout& collectionViewLayout() const { return *layout_; }
    Ref<UICollectionViewDataSource> dataSource() const { return dataSource_.lock(); }
    void setDataSource(Weak<UICollectionViewDataSource> dataSource);
    Ref<UICollectionViewDelegate> delegate() const { return delegate_.lock(); }
    void setDelegate(Weak<UICollectionViewDelegate> delegate);

    /// Makes cells of class Cell for `reuseIdentifier`.
    template <class Cell> void registerClass(std::string reuseIdentifier) {
        registerFactory(std::move(reuseIdentifier),
                        [](CGRect frame) -> Ref<UICollectionViewCell> { return make<Cell>(frame); });
    }
    /// A reused cell after prepareForReuse(), or a new one. An unregistered identifier ends the program.
    Ref<UICollectionViewCell> dequeueReusableCell(std::string const& reuseIdentifier, IndexPath indexPath);
    /// Visible cells only; null otherwise.
    Ref<UICollectionViewCell> cellForItem(IndexPath indexPath) const;
    std::vector<Ref<UICollectionViewCell>> visibleCells() const;
    int numberOfItems(int section);
    void reloadData();
    bool allowsSelection() const { return allowsSelection_; }
    void setAllowsSelection(bool allows) { allowsSelection_ = allows; }

    /// A request before the first layout is kept and applied, clamped, at the first layout with non-empty
    /// bounds.
    void scrollToItem(IndexPath indexPath, UICollectionViewScrollPosition position, bool animated);

    void layoutSubviews() override;
    void safeAreaInsetsDidChange() override;
    void touchesBegan(UITouch& touch) override;
    void touchesEnded(UITouch& touch) override;
    void touchesCancelled(UITouch& touch) override;

protected:
    void offsetDidChange() override;
    void sizeDidChange(CGSize before) override;

private:
    void registerFactory(std::string reuseIdentifier,
                         std::function<Ref<UICollectionViewCell>(CGRect)> factory);

    struct State;

    void layoutDidInvalidate();
    CGSize layoutSize() const;
    CGRect frameOfItem(int item);
    void requireItem(IndexPath indexPath);
    void refreshLayout();
    void keepPosition(CGSize from, CGSize to);
    bool isMirroredStrip() const;
    void startPosition();
    CGPoint offsetForItem(int item, UICollectionViewScrollPosition position);
    void applyPendingScroll();

    void updateCells();
    void updateCells(CGRect assigned, CGRect shown);
    void showItem(int item);
    void recycleCell(int item);
    void recycleAllCells();
    void placeCells();
    void followShownOffset(bool follow);
    int itemAt(UITouch& touch);
    void endHighlight();

    std::unique_ptr<State> state_;
    Ref<UICollectionViewFlowLayout> layout_;
    Weak<UICollectionViewDataSource> dataSource_;
    Weak<UICollectionViewDelegate> delegate_;
    bool allowsSelection_ = true;
};

} // namespace trelundo
