#include "trelundo/platform/coreanimation/CADisplayLink.h"
#include "trelundo/platform/uikit/collection/internal/UICollectionViewState.h"
#include "trelundo/platform/uikit/views/UITouch.h"

namespace trelundo {

namespace {

// Cells are made this far (points) ahead of the edge, and kept until they are twice as far behind it.
constexpr double margin = 32;

} // namespace

void UICollectionView::offsetDidChange() {
    auto const self = strong(*this);
    // Before the first layout there is nothing to show; a stale one is refreshed in the turn's layout.
    if (state_->laidOutSize == bounds().size && !state_->layoutIsStale) updateCells();
    UIScrollView::offsetDidChange();
}

// Cells for the assigned offset are made at once; while an animation still shows another place, for that one
// too.
void UICollectionView::updateCells() {
    if (state_->updating) return;
    CGRect const assigned = bounds();
    CGRect const shown = layer().presentationValues().bounds;
    state_->updating = true;
    UIView::performWithoutAnimation([&] { updateCells(assigned, shown); });
    state_->updating = false;
    followShownOffset(!assigned.insetBy(-margin, -margin).contains(shown.origin) ||
                      !assigned.insetBy(-margin, -margin).contains({shown.maxX(), shown.maxY()}));
    if (std::exchange(state_->reloadAfterUpdate, false)) reloadData();
}

void UICollectionView::updateCells(CGRect assigned, CGRect shown) {
    int const count = numberOfItems(0);
    CGSize const size = layoutSize();
    bool const mirrored = isRightToLeft();
    auto const items = [&](CGRect rect, double distance) {
        return layout_->itemsIn(rect.insetBy(-distance, -distance), count, size, mirrored);
    };
    auto const keptAssigned = items(assigned, 2 * margin);
    auto const keptShown = items(shown, 2 * margin);
    std::vector<int> leaving;
    for (auto const& [item, cell] : state_->shown)
        if (!keptAssigned.contains(item) && !keptShown.contains(item)) leaving.push_back(item);
    for (int item : leaving) recycleCell(item);
    for (auto const& range : {items(assigned, margin), items(shown, margin)})
        for (int item = range.begin; item < range.end && !state_->reloadAfterUpdate; ++item)
            if (!state_->shown.contains(item)) showItem(item);
}

// A long animation shows places between its ends, frame by frame.
void UICollectionView::followShownOffset(bool follow) {
    if (follow == state_->following) return;
    state_->following = follow;
    if (follow)
        state_->displayLink = CADisplayLink::add([this](double) {
            auto const self = strong(*this);
            updateCells();
        });
    else
        CADisplayLink::remove(state_->displayLink);
}

// Cells.

void UICollectionView::registerFactory(std::string reuseIdentifier,
                                       std::function<Ref<UICollectionViewCell>(CGRect)> factory) {
    state_->factories[std::move(reuseIdentifier)] = std::move(factory);
}

Ref<UICollectionViewCell> UICollectionView::dequeueReusableCell(std::string const& reuseIdentifier,
                                                                IndexPath indexPath) {
    auto const factory = state_->factories.find(reuseIdentifier);
    if (factory == state_->factories.end())
        fatalError("UICollectionView: no cell class is registered for \"" + reuseIdentifier + '"');
    auto& pool = state_->pool[reuseIdentifier];
    Ref<UICollectionViewCell> cell;
    if (pool.empty()) {
        cell = factory->second({{}, layout_->itemSize()});
        cell->reuseIdentifier_ = reuseIdentifier;
    } else {
        cell = std::move(pool.back());
        pool.pop_back();
        cell->prepareForReuse();
    }
    cell->item_ = indexPath.item;
    state_->handedOut.push_back(cell);
    return cell;
}

void UICollectionView::showItem(int item) {
    auto const source = dataSource();
    if (!source) return;
    auto cell = source->cellForItemAt(*this, {0, item});
    auto& handedOut = state_->handedOut;
    auto const found = std::find(handedOut.begin(), handedOut.end(), cell);
    if (found == handedOut.end())
        fatalError("UICollectionView: the data source must return a cell that it dequeued");
    handedOut.erase(found);
    for (auto const& unused : handedOut) state_->pool[unused->reuseIdentifier_].push_back(unused);
    handedOut.clear();

    cell->item_ = item;
    if (cell->isSelected() != (item == state_->selected)) cell->setSelected(item == state_->selected);
    cell->place(frameOfItem(item));
    state_->shown[item] = cell;
    addSubview(cell);
    if (auto delegate = this->delegate()) delegate->willDisplayCell(*this, *cell, {0, item});
}

void UICollectionView::recycleCell(int item) {
    auto const node = state_->shown.extract(item);
    if (node.empty()) return;
    auto const& cell = node.mapped();
    cell->removeFromSuperview();
    if (cell->isHighlighted()) cell->setHighlighted(false);
    cell->item_ = -1;
    state_->pool[cell->reuseIdentifier_].push_back(cell);
    if (auto delegate = this->delegate()) delegate->didEndDisplayingCell(*this, *cell, {0, item});
}

void UICollectionView::recycleAllCells() {
    while (!state_->shown.empty()) recycleCell(state_->shown.begin()->first);
}

void UICollectionView::placeCells() {
    int const count = numberOfItems(0);
    while (!state_->shown.empty() && state_->shown.rbegin()->first >= count)
        recycleCell(state_->shown.rbegin()->first);
    for (auto const& [item, cell] : state_->shown) cell->place(frameOfItem(item));
}

Ref<UICollectionViewCell> UICollectionView::cellForItem(IndexPath indexPath) const {
    auto const found = state_->shown.find(indexPath.item);
    bool const visible =
        indexPath.section == 0 && found != state_->shown.end() && found->second->frame().intersects(bounds());
    return visible ? found->second : nullptr;
}

std::vector<Ref<UICollectionViewCell>> UICollectionView::visibleCells() const {
    std::vector<Ref<UICollectionViewCell>> cells;
    for (auto const& [item, cell] : state_->shown)
        if (cell->frame().intersects(bounds())) cells.push_back(cell);
    return cells;
}

// Selection.

int UICollectionView::itemAt(UITouch& touch) {
    CGPoint const location = touch.locationIn(*this);
    for (auto const& [item, cell] : state_->shown)
        if (cell->frame().contains(location)) return item;
    return -1;
}

void UICollectionView::touchesBegan(UITouch& touch) {
    state_->touched = allowsSelection_ ? itemAt(touch) : -1;
    if (auto const cell = cellForItem({0, state_->touched})) cell->setHighlighted(true);
}

void UICollectionView::touchesEnded(UITouch&) {
    int const item = state_->touched;
    endHighlight();
    if (item < 0 || item >= numberOfItems(0)) return;
    if (auto const previous = state_->shown.find(state_->selected); previous != state_->shown.end())
        previous->second->setSelected(false);
    state_->selected = item;
    if (auto const cell = cellForItem({0, item})) cell->setSelected(true);
    if (auto delegate = this->delegate()) delegate->didSelectItemAt(*this, {0, item});
}

void UICollectionView::touchesCancelled(UITouch&) { endHighlight(); }

void UICollectionView::endHighlight() {
    if (auto const cell = cellForItem({0, state_->touched})) cell->setHighlighted(false);
    state_->touched = -1;
}

} // namespace trelundo
