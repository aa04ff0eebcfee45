#include "trelundo/platform/uikit/collection/UICollectionViewFlowLayout.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace trelundo {

namespace {

// Both directions are one arithmetic along the axis that scrolls and the axis across it.
struct Axes {
    double along;
    double across;
};

int clampedIndex(double value, int limit) {
    return value > 0 ? static_cast<int>(std::min(value, static_cast<double>(limit))) : 0;
}

} // namespace

/// Where the lines (columns of a horizontal layout, rows of a vertical one) and the places in a line lie.
struct UICollectionViewFlowLayout::Grid {
    bool horizontal;
    Axes item;
    int perLine; // items in a full line
    int lines;
    double lineStart; // of the first line
    double linePitch;
    double placeStart; // of the first place in a line
    double placePitch;
    double length; // of the whole content along the scrolling axis

    double lineOrigin(int line) const { return lineStart + line * linePitch; }
    double placeOrigin(int place) const { return placeStart + place * placePitch; }
};

UICollectionViewFlowLayout::Grid UICollectionViewFlowLayout::grid(int count, CGSize bounds) const {
    Grid g{};
    g.horizontal = scrollDirection_ == UICollectionViewScrollDirection::horizontal;
    UIEdgeInsets const& inset = sectionInset_;
    g.item = g.horizontal ? Axes{itemSize_.width, itemSize_.height} : Axes{itemSize_.height, itemSize_.width};
    double const acrossStart = g.horizontal ? inset.top : inset.left;
    double const available =
        g.horizontal ? bounds.height - inset.top - inset.bottom : bounds.width - inset.left - inset.right;
    double const fitting =
        std::floor((available + minimumInteritemSpacing_) / (g.item.across + minimumInteritemSpacing_));
    g.perLine = std::max(1, clampedIndex(fitting, std::numeric_limits<int>::max()));
    g.lines = count > 0 ? (count - 1) / g.perLine + 1 : 0;
    g.lineStart = g.horizontal ? inset.left : inset.top;
    g.linePitch = g.item.along + minimumLineSpacing_;
    // A single place is centred (also an item that is too big); several spread evenly from edge to edge.
    g.placeStart = g.perLine == 1 ? acrossStart + (available - g.item.across) / 2 : acrossStart;
    g.placePitch = g.perLine == 1 ? 0 : (available - g.item.across) / (g.perLine - 1);
    g.length = g.lineStart + g.lines * g.item.along + std::max(g.lines - 1, 0) * minimumLineSpacing_ +
               (g.horizontal ? inset.right : inset.bottom);
    return g;
}

CGSize UICollectionViewFlowLayout::contentSize(int count, CGSize bounds) const {
    Grid const g = grid(count, bounds);
    return g.horizontal ? CGSize{g.length, bounds.height} : CGSize{bounds.width, g.length};
}

CGRect UICollectionViewFlowLayout::frameOfItem(int item, int count, CGSize bounds, bool rightToLeft) const {
    Grid const g = grid(count, bounds);
    double const along = g.lineOrigin(item / g.perLine);
    double const across = g.placeOrigin(item % g.perLine);
    CGRect frame{g.horizontal ? CGPoint{along, across} : CGPoint{across, along}, itemSize_};
    // Content narrower than the view is mirrored in the whole view: item 0 is at its right end.
    double const width = g.horizontal ? std::max(g.length, bounds.width) : bounds.width;
    if (rightToLeft) frame.origin.x = width - frame.origin.x - frame.size.width;
    return frame;
}

UICollectionViewFlowLayout::ItemRange
UICollectionViewFlowLayout::itemsIn(CGRect rect, int count, CGSize bounds, bool rightToLeft) const {
    Grid const g = grid(count, bounds);
    if (g.linePitch <= 0) return {0, 0};
    bool const mirrored = rightToLeft && g.horizontal;
    double const width = std::max(g.length, bounds.width);
    double const low = mirrored ? width - rect.maxX() : g.horizontal ? rect.minX() : rect.minY();
    double const high = mirrored ? width - rect.minX() : g.horizontal ? rect.maxX() : rect.maxY();
    int const first = clampedIndex(std::ceil((low - g.lineStart - g.item.along) / g.linePitch), g.lines);
    int const last = clampedIndex(std::floor((high - g.lineStart) / g.linePitch) + 1, g.lines);
    auto const items = [&](int line) {
        return static_cast<int>(
            std::min(static_cast<long long>(line) * g.perLine, static_cast<long long>(count)));
    };
    return {items(first), std::max(items(first), items(last))};
}

void UICollectionViewFlowLayout::setItemSize(CGSize size) {
    itemSize_ = size;
    invalidate();
}

void UICollectionViewFlowLayout::setMinimumLineSpacing(double spacing) {
    minimumLineSpacing_ = spacing;
    invalidate();
}

void UICollectionViewFlowLayout::setMinimumInteritemSpacing(double spacing) {
    minimumInteritemSpacing_ = spacing;
    invalidate();
}

void UICollectionViewFlowLayout::setSectionInset(UIEdgeInsets inset) {
    sectionInset_ = inset;
    invalidate();
}

void UICollectionViewFlowLayout::setScrollDirection(UICollectionViewScrollDirection direction) {
    scrollDirection_ = direction;
    invalidate();
}

void UICollectionViewFlowLayout::invalidate() {
    if (didInvalidate_) didInvalidate_();
}

} // namespace trelundo
