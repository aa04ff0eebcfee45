#include "trelundo/platform/uikit/controllers/internal/AlertText.h"

#include "trelundo/platform/uikit/text/UILabel.h"

namespace trelundo {

namespace {

// Points.
constexpr double titleFontSize = 17;
constexpr double messageFontSize = 13;
constexpr double paddingTop = 20;
constexpr double paddingSide = 16;
constexpr double paddingBottom = 20;
constexpr double betweenTexts = 3;

bool isEmpty(std::optional<std::string> const& text) { return !text || text->empty(); }

} // namespace

void AlertText::setTexts(std::optional<std::string> const& title, std::optional<std::string> const& message) {
    for (auto const& label : labels_) label->removeFromSuperview();
    labels_.clear();
    auto const strongFont = UIFont::system(titleFontSize, UIFont::Weight::semibold);
    if (!isEmpty(title)) labels_.push_back(addLabel(*title, strongFont));
    if (!isEmpty(message))
        labels_.push_back(addLabel(*message, title ? UIFont::system(messageFontSize) : strongFont));
    invalidateIntrinsicContentSize();
    setNeedsLayout();
}

Ref<UILabel> AlertText::addLabel(std::string const& text, UIFont font) {
    auto label = make<UILabel>();
    label->setFont(font);
    label->setTextColor(UIColor::label());
    label->setTextAlignment(NSTextAlignment::center);
    label->setNumberOfLines(0);
    label->setText(text);
    addSubview(label);
    return label;
}

CGSize AlertText::intrinsicContentSize() const {
    if (labels_.empty()) return {width, 0};
    double height = paddingTop + paddingBottom + betweenTexts * static_cast<double>(labels_.size() - 1);
    for (auto const& label : labels_) height += label->sizeThatFits({width - 2 * paddingSide, 0}).height;
    return {width, height};
}

void AlertText::layoutSubviews() {
    UIScrollView::layoutSubviews();
    double y = paddingTop;
    double const textWidth = bounds().size.width - 2 * paddingSide;
    for (auto const& label : labels_) {
        double const height = label->sizeThatFits({textWidth, 0}).height;
        label->setFrame({paddingSide, y, textWidth, height});
        y += height + betweenTexts;
    }
    CGSize const content{bounds().size.width, intrinsicContentSize().height};
    if (content != contentSize()) setContentSize(content); // an assignment asks for another layout
}

} // namespace trelundo
