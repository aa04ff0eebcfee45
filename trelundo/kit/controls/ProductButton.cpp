#include "trelundo/kit/controls/ProductButton.h"

#include "trelundo/kit/common/internal/ViewConfiguration.h"
#include "trelundo/platform/foundation/Lazy.h"

#include <algorithm>

namespace trelundo {

namespace {

constexpr double gapBeforeTotal = 8; // points
// A title gives up its saving before it shrinks below this share of its size.
constexpr double readableScale = 0.7;

} // namespace

void ProductButton::setupRow(UIEdgeInsets insets) {
    roundCorners(*this);
    titleLabel()->setNumberOfLines(2);
    shrinkToFit(*titleLabel());
    setContentHorizontalAlignment(UIControlContentHorizontalAlignment::leading);
    setContentEdgeInsets(insets);
    setTitleEdgeInsets(insets);
}

void ProductButton::setProducts(Products products) {
    products_ = std::move(products);
    productsDidChange();
}

void ProductButton::setProduct(Ref<SKProduct> product) {
    product_ = std::move(product);
    tellsSaving_ = true;
    productDidChange();
}

void ProductButton::setSelected(bool selected) {
    UIButton::setSelected(selected);
    selectionDidChange();
}

// Layout

void ProductButton::layoutSubviews() {
    if (totalSeparatorView_ && totalLabel_) placeTotalBlock();
    auto const room = titleRoom();
    chooseTitles(room.width());
    UIButton::layoutSubviews();
    keepTitleWithin(room);
}

/// What insets, picture and visible total block leave to the title.
CGRect ProductButton::titleRoom() const {
    auto const inner = bounds().insetBy(contentEdgeInsets()).insetBy(titleEdgeInsets());
    auto const picture = currentImage();
    double const beforeTitle = picture ? picture->size().width : 0;
    double left = inner.minX() + (isRightToLeft() ? 0 : beforeTitle);
    double right = inner.maxX() - (isRightToLeft() ? beforeTitle : 0);
    if (totalSeparatorView_ && !totalSeparatorView_->isHidden()) {
        auto const separator = totalSeparatorView_->frame();
        if (isRightToLeft())
            left = std::max(left, separator.maxX() + gapBeforeTotal);
        else
            right = std::min(right, separator.minX() - gapBeforeTotal);
    }
    return {left, inner.minY(), std::max(right - left, 0.0), inner.height()};
}

bool ProductButton::hasRoomForSaving(double width) {
    auto const title = titleWithSaving();
    if (!title) return true;
    auto const probe = make<UILabel>(CGRect{0, 0, width, greatestFiniteMagnitude});
    probe->setFont(titleLabel()->font());
    probe->setNumberOfLines(2);
    probe->setAdjustsFontSizeToFitWidth(true);
    probe->setMinimumScaleFactor(readableScale);
    probe->setAttributedText(title);
    auto const fit = probe->fit();
    return !fit.truncated && !fit.breaksWord;
}

void ProductButton::chooseTitles(double width) {
    if (!product_ || tellsSaving_ == hasRoomForSaving(width)) return;
    tellsSaving_ = !tellsSaving_;
    writeTitles();
}

/// A title that is narrowed may need more lines, up to the height of the row.
void ProductButton::keepTitleWithin(CGRect room) {
    auto frame = titleLabel()->frame();
    if (frame.minX() >= room.minX() && frame.maxX() <= room.maxX()) return;
    frame.origin.x = std::max(frame.minX(), room.minX());
    frame.size.width = std::max(0.0, std::min(frame.maxX(), room.maxX()) - frame.origin.x);
    if (titleLabel()->sizeThatFits({frame.size.width, 0}).height > frame.size.height) {
        frame.origin.y = room.minY();
        frame.size.height = room.size.height;
    }
    titleLabel()->setFrame(frame);
}

// The total block

void ProductButton::addTotalBlock(UIColor separatorColor, NSAttributedString const& amount) {
    totalSeparatorView_ = named("totalSeparatorView", make<UIView>());
    totalSeparatorView_->setBackgroundColor(std::move(separatorColor));
    addSubview(totalSeparatorView_);
    totalLabel_ = named("totalLabel", make<UILabel>());
    totalLabel_->setAttributedText(amount);
    addSubview(totalLabel_);
}

void ProductButton::removeTotalBlock() {
    if (totalSeparatorView_) totalSeparatorView_->removeFromSuperview();
    if (totalLabel_) totalLabel_->removeFromSuperview();
    totalSeparatorView_ = nullptr;
    totalLabel_ = nullptr;
}

} // namespace trelundo
