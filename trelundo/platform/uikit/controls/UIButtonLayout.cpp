#include "trelundo/platform/uikit/controls/internal/UIButtonState.h"
#include "trelundo/platform/uikit/views/UIScreen.h"

#include <algorithm>

namespace trelundo {

namespace {

// Above and below a title without content insets, points.
constexpr double titlePadding = 6;
constexpr double minimumTitledWidth = 30;

using Horizontal = UIControlContentHorizontalAlignment;
using Vertical = UIControlContentVerticalAlignment;

bool isEmpty(CGSize size) { return size.width <= 0 && size.height <= 0; }

CGSize insetSize(CGSize size, UIEdgeInsets const& insets) {
    return {std::max(size.width - insets.left - insets.right, 0.0),
            std::max(size.height - insets.top - insets.bottom, 0.0)};
}

CGSize smaller(CGSize a, CGSize b) { return {std::min(a.width, b.width), std::min(a.height, b.height)}; }

/// One of the two things side by side in a button.
struct Part {
    CGSize size;
    UIEdgeInsets insets;
    double widthBefore; // of the other part, points; 0 when it comes after
    double widthAfter;
};

double left(Part const& part, CGRect const& content, Horizontal alignment) {
    double const near = content.origin.x + part.insets.left + part.widthBefore;
    double const far =
        content.origin.x + content.size.width - part.insets.right - part.widthAfter - part.size.width;
    if (alignment == Horizontal::left || alignment == Horizontal::fill) return near;
    if (alignment == Horizontal::right) return far;
    return (near + far) / 2;
}

double top(Part const& part, CGRect const& content, Vertical alignment) {
    double const near = content.origin.y + part.insets.top;
    double const far = content.origin.y + content.size.height - part.insets.bottom - part.size.height;
    if (alignment == Vertical::top || alignment == Vertical::fill) return near;
    if (alignment == Vertical::bottom) return far;
    return (near + far) / 2;
}

} // namespace

CGSize UIButton::titleSize() const {
    return state_->titleLabel ? state_->titleLabel->sizeThatFits({}) : CGSize{};
}

CGSize UIButton::imageSize() const {
    auto const image = currentImage();
    return image ? image->size() : CGSize{};
}

CGSize UIButton::emptySize() const {
    if (!hasZeroContentInsets()) {
        auto const& insets = contentEdgeInsets_;
        return {insets.left + insets.right, insets.top + insets.bottom};
    }
    return {30, isSystem() ? 30.0 : 34.0};
}

CGSize UIButton::intrinsicContentSize() const {
    auto const title = titleSize();
    auto const image = imageSize();
    auto const& insets = contentEdgeInsets_;
    CGSize size{insets.left + image.width + title.width + insets.right,
                insets.top + std::max(image.height, title.height) + insets.bottom};
    if (isEmpty(title) && isEmpty(image))
        size = emptySize();
    else if (!isEmpty(title) && hasZeroContentInsets())
        size = {std::max(size.width, minimumTitledWidth), size.height + 2 * titlePadding};
    auto const background = backgroundImage(state());
    auto const least = background ? background->size() : CGSize{};
    return {std::max(size.width, least.width), std::max(size.height, least.height)};
}

CGSize UIButton::sizeThatFits(CGSize /*size*/) const { return intrinsicContentSize(); }

CGSize UIButton::titleSizeWithin(CGSize available) const {
    auto const natural = titleSize();
    if (natural.width <= available.width) return smaller(natural, available);
    if (available.width <= 0) return {};
    double const height = state_->titleLabel->sizeThatFits({available.width, 0}).height;
    return {available.width, std::min(height, available.height)};
}

UIButton::Parts UIButton::parts(CGRect bounds) const {
    auto const content = bounds.insetBy(contentEdgeInsets_);
    auto const horizontal = effectiveContentHorizontalAlignment();
    auto const vertical = contentVerticalAlignment();

    auto const imageRoom = insetSize(content.size, imageEdgeInsets_);
    auto image = smaller(imageSize(), imageRoom);
    auto titleRoom = insetSize(content.size, titleEdgeInsets_);
    titleRoom.width = std::max(titleRoom.width - image.width, 0.0);
    auto title = titleSizeWithin(titleRoom);
    if (horizontal == Horizontal::fill && !isEmpty(title)) title.width = titleRoom.width;
    if (vertical == Vertical::fill) {
        if (!isEmpty(image)) image.height = imageRoom.height;
        if (!isEmpty(title)) title.height = titleRoom.height;
    }

    bool const titleFirst = isRightToLeft();
    Part const imagePart{image, imageEdgeInsets_, titleFirst ? title.width : 0, titleFirst ? 0 : title.width};
    Part const titlePart{title, titleEdgeInsets_, titleFirst ? 0 : image.width, titleFirst ? image.width : 0};
    auto const place = [&](Part const& part) {
        return CGRect{{left(part, content, horizontal), top(part, content, vertical)}, part.size};
    };
    return {place(imagePart), place(titlePart)};
}

void UIButton::layoutSubviews() {
    UIControl::layoutSubviews();
    auto const [image, title] = parts(bounds());
    double const scale =
        traitCollection().displayScale > 0 ? traitCollection().displayScale : UIScreen::main().scale();
    auto const onPixels = [scale](CGRect rect) {
        return CGRect{{roundToPixel(rect.origin.x, scale), roundToPixel(rect.origin.y, scale)}, rect.size};
    };
    if (state_->backgroundView) state_->backgroundView->setFrame(bounds());
    if (state_->imageView) state_->imageView->setFrame(onPixels(image));
    if (state_->titleLabel) state_->titleLabel->setFrame(onPixels(title));
}

std::optional<double> UIButton::firstBaselineOffsetFromTop() const {
    if (isEmpty(titleSize())) return std::nullopt;
    auto const title = parts({{}, intrinsicContentSize()}).title;
    return title.minY() + state_->titleLabel->firstBaselineOffsetFromTop().value_or(0);
}

std::optional<double> UIButton::lastBaselineOffsetFromBottom() const {
    if (isEmpty(titleSize())) return std::nullopt;
    auto const size = intrinsicContentSize();
    auto const title = parts({{}, size}).title;
    return size.height - title.maxY() + state_->titleLabel->lastBaselineOffsetFromBottom().value_or(0);
}

} // namespace trelundo
