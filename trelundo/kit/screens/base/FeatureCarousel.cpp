#include "trelundo/kit/screens/base/FeatureCarousel.h"

#include "trelundo/kit/common/Pictures.h"
#include "trelundo/platform/foundation/FatalError.h"
#include "trelundo/platform/uikit/controllers/UIViewController.h"
#include "trelundo/platform/uikit/layout/NSLayoutAnchor.h"

namespace trelundo {

namespace {
constexpr double driftStep = 1;         // points
constexpr double driftDuration = 0.001; // seconds: one step per displayed frame

NSObject& screenOf(UICollectionView& strip) {
    UIResponder* step = &strip;
    while (step->nextResponder() && !dynamic_cast<UIViewController*>(step)) step = step->nextResponder();
    return *step;
}

} // namespace

Ref<UICollectionView> FeatureCarousel::makeStrip(Style const& style) {
    auto layout = make<UICollectionViewFlowLayout>();
    layout->setScrollDirection(UICollectionViewScrollDirection::horizontal);
    layout->setItemSize(style.itemSize);
    layout->setMinimumLineSpacing(style.lineSpacing);
    layout->setMinimumInteritemSpacing(style.interitemSpacing);
    layout->setSectionInset(style.sectionInset);

    collectionView_ = make<UICollectionView>(CGRect{}, layout);
    collectionView_->setTranslatesAutoresizingMaskIntoConstraints(false);
    collectionView_->setBackgroundColor(UIColor::clear());
    collectionView_->setShowsHorizontalScrollIndicator(false);
    collectionView_->setDataSource(this);
    collectionView_->setDelegate(this);
    activate({collectionView_->heightAnchor() == style.height});
    return collectionView_;
}

void FeatureCarousel::scrollToFirstItem() {
    collectionView_->scrollToItem({}, UICollectionViewScrollPosition::centeredHorizontally, false);
}

void FeatureCarousel::start() {
    stop_ = false;
    drift();
}

void FeatureCarousel::drift() {
    double const x =
        collectionView_->contentOffset().x + (collectionView_->isRightToLeft() ? -driftStep : driftStep);
    Weak<FeatureCarousel> const weak{this};
    UIView::animate({
        .duration = driftDuration,
        .animations =
            [weak, x] {
                if (auto carousel = weak.lock()) carousel->collectionView_->setContentOffset({x, 0});
            },
        .completion =
            [weak](bool) {
                auto const carousel = weak.lock();
                if (carousel && !carousel->stop_) carousel->drift();
            },
    });
}

int FeatureCarousel::numberOfItemsInSection(UICollectionView& /*collectionView*/, int /*section*/) {
    return itemCount;
}

Ref<UICollectionViewCell> FeatureCarousel::cellForItemAt(UICollectionView& collectionView,
                                                         IndexPath indexPath) {
    auto cell = cast<FeatureCell>(collectionView.dequeueReusableCell("cell", indexPath));
    if (features_.empty()) fatalError("Division by zero: a feature carousel needs at least one feature");
    auto const& [text, picture] = features_[static_cast<std::size_t>(indexPath.item) % features_.size()];
    cell->setFeature(text, Pictures::hostImage(picture, screenOf(collectionView)));
    return cell;
}

} // namespace trelundo
