#include "trelundo/platform/uikit/collection/UICollectionView.h"

#include "trelundo/platform/coreanimation/CADisplayLink.h"
#include "trelundo/platform/foundation/FatalError.h"
#include "trelundo/platform/foundation/Log.h"
#include "trelundo/platform/uikit/views/UITouch.h"

#include <algorithm>
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

    bool isUpdating = false;
    bool reloadsAfterUpdate = false;
    int displayLink = 0;
    bool isFollowing = false;

    int selected = -1;
    int touched = -1;
};

namespace {

using Position = UICollectionViewScrollPosition;

bool has(Position positions, Position position) {
    return (static_cast<unsigned>(positions) & static_cast<unsigned>(position)) != 0;
}

// Where one axis scrolls to: the item's near edge, middle or far edge at the same place of the view.
double alignedOffset(double current, double start, double length, double visible, bool near, bool middle,
                     bool far) {
    if (near + middle + far > 1) fatalError("scrollToItem: two positions on one axis");
    if (near) return start;
    if (middle) return start + length / 2 - visible / 2;
    if (far) return start + length - visible;
    return current;
}

// Cells are made this far (points) ahead of the edge, and kept until they are twice as far behind it.
constexpr double margin = 32;

} // namespace

UICollectionView::UICollectionView(CGRect frame, Ref<UICollectionViewFlowLayout> layout)
    : UIScrollView(frame)
    , state_(std::make_unique<State>())
    , layout_(std::move(layout)) {
    if (!layout_) fatalError("UICollectionView must be initialized with a layout");
    layout_->didInvalidate_ = [view = Weak<UICollectionView>{this}] {
        if (auto const shown = view.lock()) shown->layoutDidInvalidate();
    };
}

UICollectionView::~UICollectionView() { followShownOffset(false); }

void UICollectionView::setDataSource(Weak<UICollectionViewDataSource> dataSource) {
    dataSource_ = std::move(dataSource);
    reloadData();
}

void UICollectionView::setDelegate(Weak<UICollectionViewDelegate> delegate) {
    delegate_ = std::move(delegate);
    setScrollDelegate(delegate_);
}

int UICollectionView::numberOfItems(int section) {
    if (section != 0) fatalError("UICollectionView: no section " + std::to_string(section));
    if (!state_->count) {
        auto const source = dataSource();
        bool const hasSection = source && source->numberOfSections(*this) > 0;
        state_->count = hasSection ? std::max(0, source->numberOfItemsInSection(*this, 0)) : 0;
    }
    return *state_->count;
}

void UICollectionView::reloadData() {
    if (state_->isUpdating) {
        state_->reloadsAfterUpdate = true;
        return;
    }
    recycleAllCells();
    state_->count.reset();
    state_->selected = -1;
    layoutDidInvalidate();
}

// Layout.

void UICollectionView::layoutDidInvalidate() {
    state_->layoutIsStale = true;
    setNeedsLayout();
}

void UICollectionView::safeAreaInsetsDidChange() {
    UIScrollView::safeAreaInsetsDidChange();
    layoutDidInvalidate();
}

// The view without its insets: what the layout fills across and mirrors in.
CGSize UICollectionView::layoutSize() const {
    return CGRect{{}, bounds().size}.insetBy(adjustedContentInset()).size;
}

CGRect UICollectionView::frameOfItem(int item) {
    return layout_->frameOfItem(item, numberOfItems(0), layoutSize(), isRightToLeft());
}

void UICollectionView::layoutSubviews() {
    UIScrollView::layoutSubviews();
    if (bounds().isEmpty()) return;
    UIView::performWithoutAnimation([this] {
        refreshLayout();
        applyPendingScroll();
    });
    updateCells();
}

void UICollectionView::sizeDidChange(CGSize) {
    // Positions are kept by refreshLayout(), which knows the new content.
}

void UICollectionView::refreshLayout() {
    if (!state_->layoutIsStale && state_->laidOutSize == bounds().size) return;
    auto const before = std::exchange(state_->laidOutSize, bounds().size);
    state_->layoutIsStale = false;
    int const count = numberOfItems(0);
    setContentSize(layout_->contentSize(count, layoutSize()));
    if (before == CGSize{})
        startPosition();
    else
        keepPosition(before, bounds().size);
    placeCells();

    bool const horizontal = layout_->scrollDirection() == UICollectionViewScrollDirection::horizontal;
    CGSize const room = CGRect{{}, layoutSize()}.insetBy(layout_->sectionInset()).size;
    CGSize const item = layout_->itemSize();
    if (count > 0 && (horizontal ? item.height > room.height : item.width > room.width))
        logWarning("UICollectionView: the items are larger than the view across the scrolling direction; "
                   "they are centred");
}

bool UICollectionView::isMirroredStrip() const {
    return layout_->scrollDirection() == UICollectionViewScrollDirection::horizontal && isRightToLeft();
}

// An offset that was set before anything was known counts from the first item's end of the content.
void UICollectionView::startPosition() {
    CGPoint offset = contentOffset();
    if (isMirroredStrip())
        offset.x += maximumOffset().x;
    else if (offset.x == 0)
        offset.x = minimumOffset().x;
    if (offset.y == 0) offset.y = minimumOffset().y;
    setBounds({offset, bounds().size});
}

// The far edge has moved with the size or the count; a mirrored strip hangs on its right end.
void UICollectionView::keepPosition(CGSize from, CGSize to) {
    if (isTracking() || isDecelerating()) return;
    CGPoint offset = contentOffset();
    if (isMirroredStrip()) offset.x += from.width - to.width;
    CGPoint const low = minimumOffset();
    CGPoint const high = maximumOffset();
    offset = {std::clamp(offset.x, low.x, high.x), std::clamp(offset.y, low.y, high.y)};
    setBounds({offset, bounds().size});
}

// Scrolling to an item.

void UICollectionView::requireItem(IndexPath indexPath) {
    if (indexPath.section == 0 && indexPath.item >= 0 && indexPath.item < numberOfItems(0)) return;
    fatalError("UICollectionView: no item " + std::to_string(indexPath.item) + " in section " +
               std::to_string(indexPath.section));
}

void UICollectionView::scrollToItem(IndexPath indexPath, UICollectionViewScrollPosition position,
                                    bool animated) {
    if (indexPath.section != 0 || indexPath.item < 0) requireItem(indexPath);
    if (bounds().isEmpty() || state_->laidOutSize == CGSize{}) {
        state_->pendingScroll = State::ScrollRequest{indexPath, position};
        setNeedsLayout();
        return;
    }
    refreshLayout();
    requireItem(indexPath);
    setContentOffset(offsetForItem(indexPath.item, position), animated);
}

void UICollectionView::applyPendingScroll() {
    // Without a data source the item cannot exist yet: the request waits for it.
    if (!state_->pendingScroll || !dataSource()) return;
    auto const request = *std::exchange(state_->pendingScroll, std::nullopt);
    requireItem(request.indexPath);
    setContentOffset(offsetForItem(request.indexPath.item, request.position));
}

CGPoint UICollectionView::offsetForItem(int item, UICollectionViewScrollPosition position) {
    CGRect const frame = frameOfItem(item);
    CGSize const size = bounds().size;
    CGPoint const current = contentOffset();
    CGPoint const low = minimumOffset();
    CGPoint const high = maximumOffset();
    double const x =
        alignedOffset(current.x, frame.minX(), frame.width(), size.width, has(position, Position::left),
                      has(position, Position::centeredHorizontally), has(position, Position::right));
    double const y =
        alignedOffset(current.y, frame.minY(), frame.height(), size.height, has(position, Position::top),
                      has(position, Position::centeredVertically), has(position, Position::bottom));
    return {std::clamp(x, low.x, high.x), std::clamp(y, low.y, high.y)};
}

// Which cells are there.

void UICollectionView::offsetDidChange() {
    auto const self = strong(*this);
    // Before the first layout there is nothing to show; a stale one is refreshed in the turn's layout.
    if (state_->laidOutSize == bounds().size && !state_->layoutIsStale) updateCells();
    UIScrollView::offsetDidChange();
}

// Cells for the assigned offset are made at once; while an animation still shows another place, for that one
// too.
void UICollectionView::updateCells() {
    if (state_->isUpdating) return;
    CGRect const assigned = bounds();
    CGRect const shown = layer().presentationValues().bounds;
    state_->isUpdating = true;
    UIView::performWithoutAnimation([&] { updateCells(assigned, shown); });
    state_->isUpdating = false;
    followShownOffset(!assigned.insetBy(-margin, -margin).contains(shown.origin) ||
                      !assigned.insetBy(-margin, -margin).contains({shown.maxX(), shown.maxY()}));
    if (std::exchange(state_->reloadsAfterUpdate, false)) reloadData();
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
    for (int const item : leaving) recycleCell(item);
    for (auto const& range : {items(assigned, margin), items(shown, margin)})
        for (int item = range.begin; item < range.end && !state_->reloadsAfterUpdate; ++item)
            if (!state_->shown.contains(item)) showItem(item);
}

// A long animation shows places between its ends, frame by frame.
void UICollectionView::followShownOffset(bool follow) {
    if (follow == state_->isFollowing) return;
    state_->isFollowing = follow;
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
    auto const found = std::ranges::find(handedOut, cell);
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
