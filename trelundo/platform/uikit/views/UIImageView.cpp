#include "trelundo/platform/uikit/views/UIImageView.h"

namespace trelundo {

namespace {

constexpr CGColor shade{0, 0, 0, 0.5};

CGRect centred(CGSize size, CGRect const& bounds) {
    return {bounds.midX() - size.width / 2, bounds.midY() - size.height / 2, size.width, size.height};
}

CGRect scaled(CGSize size, double factor, CGRect const& bounds) {
    return centred({size.width * factor, size.height * factor}, bounds);
}

bool isAtLeft(UIViewContentMode mode) {
    return mode == UIViewContentMode::left || mode == UIViewContentMode::topLeft ||
           mode == UIViewContentMode::bottomLeft;
}
bool isAtRight(UIViewContentMode mode) {
    return mode == UIViewContentMode::right || mode == UIViewContentMode::topRight ||
           mode == UIViewContentMode::bottomRight;
}
bool isAtTop(UIViewContentMode mode) {
    return mode == UIViewContentMode::top || mode == UIViewContentMode::topLeft ||
           mode == UIViewContentMode::topRight;
}
bool isAtBottom(UIViewContentMode mode) {
    return mode == UIViewContentMode::bottom || mode == UIViewContentMode::bottomLeft ||
           mode == UIViewContentMode::bottomRight;
}

CGRect placed(UIViewContentMode mode, CGSize size, CGRect const& bounds) {
    auto rect = centred(size, bounds);
    if (isAtLeft(mode)) rect.origin.x = bounds.minX();
    if (isAtRight(mode)) rect.origin.x = bounds.maxX() - size.width;
    if (isAtTop(mode)) rect.origin.y = bounds.minY();
    if (isAtBottom(mode)) rect.origin.y = bounds.maxY() - size.height;
    return rect;
}

CornerRadii cornerRadii(CALayer const& layer) {
    auto const radiusOf = [&layer](CACornerMask corner) {
        bool const isRounded =
            (static_cast<unsigned>(layer.maskedCorners()) & static_cast<unsigned>(corner)) != 0;
        return isRounded ? layer.presentationValues().cornerRadius : 0;
    };
    return {radiusOf(CACornerMask::minXMinY), radiusOf(CACornerMask::maxXMinY),
            radiusOf(CACornerMask::minXMaxY), radiusOf(CACornerMask::maxXMaxY)};
}

CGAffineTransform mirroring(CGRect const& bounds) { return {-1, 0, 0, 1, 2 * bounds.midX(), 0}; }

} // namespace

UIImageView::UIImageView(CGRect frame)
    : UIView(frame) {
    setUserInteractionEnabled(false);
}

UIImageView::UIImageView(Ref<UIImage> image)
    : UIImageView(CGRect{{}, image ? image->size() : CGSize{}}) {
    image_ = std::move(image);
}

void UIImageView::setImage(Ref<UIImage> image) {
    auto const previous = intrinsicContentSize();
    image_ = std::move(image);
    if (intrinsicContentSize() != previous) invalidateIntrinsicContentSize();
    setNeedsDisplay();
}

CGSize UIImageView::intrinsicContentSize() const {
    return image_ ? image_->size() : CGSize{noIntrinsicMetric, noIntrinsicMetric};
}

CGSize UIImageView::sizeThatFits(CGSize size) const {
    return image_ ? image_->size() : UIView::sizeThatFits(size);
}

CGRect UIImageView::contentRect(UIViewContentMode mode, CGSize size, CGRect bounds) {
    if (size.width <= 0 || size.height <= 0) return {bounds.midX(), bounds.midY(), 0, 0};
    double const horizontal = bounds.width() / size.width;
    double const vertical = bounds.height() / size.height;
    switch (mode) {
    case UIViewContentMode::scaleToFill:
    case UIViewContentMode::redraw:
        return bounds;
    case UIViewContentMode::scaleAspectFit:
        return scaled(size, std::min(horizontal, vertical), bounds);
    case UIViewContentMode::scaleAspectFill:
        return scaled(size, std::max(horizontal, vertical), bounds);
    default:
        return placed(mode, size, bounds);
    }
}

CGRect UIImageView::drawingRect(CALayer const& /*layer*/) const {
    return image_ ? bounds().unionWith(contentRect(contentMode(), image_->size(), bounds())) : bounds();
}

bool UIImageView::isTemplate() const {
    return image_ && image_->renderingMode() == UIImageRenderingMode::alwaysTemplate;
}

void UIImageView::draw(CGRect /*rect*/, Canvas& canvas) {
    if (!image_ || bounds().isEmpty()) return;
    bool const mirrored = image_->flipsForRightToLeftLayoutDirection() && isRightToLeft();
    canvas.save();
    if (mirrored) canvas.concatenate(mirroring(bounds()));
    drawImage(canvas, isTemplate() ? std::optional{tintColor().cgColor(traitCollection())} : std::nullopt);
    if (isDarkened_) drawImage(canvas, shade);
    canvas.restore();
}

void UIImageView::drawImage(Canvas& canvas, std::optional<CGColor> tint) {
    auto const rect = contentRect(contentMode(), image_->size(), bounds());
    if (clipsToBounds())
        canvas.drawPicture(image_->picture(), rect, bounds(), cornerRadii(layer()), tint);
    else
        canvas.drawPicture(image_->picture(), rect, rect, {}, tint);
}

void UIImageView::setDarkened(bool darkened) {
    if (darkened == isDarkened_) return;
    isDarkened_ = darkened;
    setNeedsDisplay();
}

void UIImageView::tintColorDidChange() {
    UIView::tintColorDidChange();
    if (isTemplate()) setNeedsDisplay();
}

void UIImageView::appearanceDidChange() {
    UIView::appearanceDidChange();
    if (isTemplate()) setNeedsDisplay();
}

} // namespace trelundo
