#include "trelundo/platform/uikit/collection/UICollectionView.h"

#include "trelundo/platform/foundation/Log.h"
#include "trelundo/platform/uikit/collection/internal/UICollectionViewState.h"

namespace trelundo {

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

} // namespace

UICollectionView::UICollectionView(CGRect frame, Ref<UICollectionViewFlowLayout> layout)
    : UIScrollView(frame)
    , state_(std::make_unique<State>())
    , layout_(std::move(layout)) {
    if (!layout_) fatalError("UICollectionView must be initialized with a layout");
    layout_->collectionView_ = this;
}

UICollectionView::~UICollectionView() {
    followShownOffset(false);
    if (layout_->collectionView_ == this) layout_->collectionView_ = nullptr;
}

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
    if (state_->updating) {
        state_->reloadAfterUpdate = true;
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

} // namespace trelundo
