#pragma once

#include "trelundo/platform/foundation/NSObject.h"
#include "trelundo/platform/graphics/Geometry.h"

#include <functional>

namespace trelundo {

enum class UICollectionViewScrollDirection : int { vertical = 0, horizontal = 1 };

/// Places equal items in lines by arithmetic: no storage per item. Mirrored in right-to-left layouts.
class UICollectionViewFlowLayout : public NSObject {
public:
    CGSize itemSize() const { return itemSize_; }
    void setItemSize(CGSize size);
    double minimumLineSpacing() const { return minimumLineSpacing_; }
    void setMinimumLineSpacing(double spacing);
    double minimumInteritemSpacing() const { return minimumInteritemSpacing_; }
    void setMinimumInteritemSpacing(double spacing);
    UIEdgeInsets sectionInset() const { return sectionInset_; }
    void setSectionInset(UIEdgeInsets inset);
    UICollectionViewScrollDirection scrollDirection() const { return scrollDirection_; }
    void setScrollDirection(UICollectionViewScrollDirection direction);

    /// The whole content's size for `count` items in a view of `bounds`.
    CGSize contentSize(int count, CGSize bounds) const;
    /// The frame of `item` in content coordinates.
    CGRect frameOfItem(int item, int count, CGSize bounds, bool rightToLeft) const;
    /// First and one past the last item whose frames may touch `rect`.
    struct ItemRange {
        int begin;
        int end;
        bool contains(int item) const { return item >= begin && item < end; }
        bool operator==(ItemRange const&) const = default;
    };
    ItemRange itemsIn(CGRect rect, int count, CGSize bounds, bool rightToLeft) const;

private:
    friend class UICollectionView;
    struct Grid;
    Grid grid(int count, CGSize bounds) const;
    void invalidate();

    CGSize itemSize_{50, 50};
    double minimumLineSpacing_ = 10;
    double minimumInteritemSpacing_ = 10;
    UIEdgeInsets sectionInset_;
    UICollectionViewScrollDirection scrollDirection_ = UICollectionViewScrollDirection::vertical;
    std::function<void()> didInvalidate_; // of the collection view that it serves
};

} // namespace trelundo
