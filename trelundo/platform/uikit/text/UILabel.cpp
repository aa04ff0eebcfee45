#include "trelundo/platform/uikit/text/UILabel.h"

#include "trelundo/platform/uikit/accessibility/TextChanges.h"
#include "trelundo/platform/uikit/text/internal/UILabelState.h"

namespace trelundo {

namespace {

namespace Key = NSAttributedStringKey;

} // namespace

UILabel::UILabel(CGRect frame)
    : UIView(frame)
    , state_(std::make_unique<State>()) {
    setUserInteractionEnabled(false);
}

UILabel::~UILabel() = default;

std::optional<std::string> UILabel::text() const {
    return attributedText_ ? std::optional{attributedText_->string()} : std::nullopt;
}

void UILabel::setText(std::optional<std::string> text) {
    if (isPlain_ && text == this->text()) return;
    isPlain_ = true;
    attributedText_.reset();
    if (text) attributedText_ = NSAttributedString{std::move(*text)};
    contentDidChange();
}

void UILabel::setAttributedText(std::optional<NSAttributedString> text) {
    if (!isPlain_ && text == attributedText_) return;
    isPlain_ = false;
    attributedText_ = std::move(text);
    contentDidChange();
}

bool UILabel::keepsAttributes() const { return isPlain_ || isTitle() || !attributedText_; }

template <class T> std::optional<T> UILabel::firstAttribute(AttributeKey<T> key) const {
    if (keepsAttributes() || attributedText_->empty()) return std::nullopt;
    return attributedText_->runs().front().attributes.get(key);
}

template <class Change> void UILabel::changeAttributes(Change const& change) {
    if (keepsAttributes()) return;
    NSAttributedString changed;
    for (auto const& run : attributedText_->runs()) {
        auto attributes = run.attributes;
        change(attributes);
        changed.append(run.text, std::move(attributes));
    }
    attributedText_ = std::move(changed);
}

template <class Change> void UILabel::changeParagraphs(Change const& change) {
    changeAttributes([&change](TextAttributes& attributes) {
        auto style = attributes.get(Key::paragraphStyle);
        if (!style) return;
        change(*style);
        attributes.set(Key::paragraphStyle, *style);
    });
}

UIFont UILabel::font() const { return firstAttribute(Key::font).value_or(font_); }

void UILabel::setFont(UIFont font) {
    if (font == font_ && keepsAttributes()) return;
    font_ = font;
    changeAttributes([&font](TextAttributes& attributes) { attributes.set(Key::font, font); });
    contentDidChange();
}

UIColor UILabel::textColor() const { return firstAttribute(Key::foregroundColor).value_or(textColor_); }

void UILabel::setTextColor(UIColor color) {
    if (color == textColor_ && keepsAttributes()) return;
    textColor_ = color;
    changeAttributes([&color](TextAttributes& attributes) { attributes.set(Key::foregroundColor, color); });
    forgetLayouts();
    setNeedsDisplay();
}

void UILabel::setTextAlignment(NSTextAlignment alignment) {
    textAlignment_ = alignment;
    changeParagraphs([alignment](NSParagraphStyle& style) { style.alignment = alignment; });
    forgetLayouts();
    setNeedsDisplay();
}

void UILabel::setLineBreakMode(NSLineBreakMode mode) {
    lineBreakMode_ = mode;
    changeParagraphs([mode](NSParagraphStyle& style) { style.lineBreakMode = mode; });
    contentDidChange();
}

void UILabel::setNumberOfLines(int lines) {
    numberOfLines_ = std::max(lines, 0);
    contentDidChange();
}

void UILabel::setAdjustsFontSizeToFitWidth(bool adjusts) {
    adjustsFontSizeToFitWidth_ = adjusts;
    contentDidChange();
}

void UILabel::setMinimumScaleFactor(double factor) {
    minimumScaleFactor_ = factor;
    contentDidChange();
}

void UILabel::setPreferredMaxLayoutWidth(double width) {
    preferredMaxLayoutWidth_ = width;
    contentDidChange();
}

void UILabel::setEnabled(bool enabled) {
    isEnabled_ = enabled;
    setNeedsDisplay();
}

void UILabel::becomeTitle(std::function<void()> contentDidChange) {
    state_->titleObserver = std::move(contentDidChange);
}

bool UILabel::isTitle() const { return static_cast<bool>(state_->titleObserver); }

void UILabel::contentDidChange() {
    forgetLayouts();
    invalidateIntrinsicContentSize();
    setNeedsDisplay();
    if (isTitle())
        state_->titleObserver();
    else
        reportText();
}

void UILabel::reportText() {
    auto text = this->text().value_or("");
    if (text == state_->shownText) return;
    state_->shownText = text;
    if (isInVisibleWindow()) textDidChange(*this, text);
}

void UILabel::forgetLayouts() {
    state_->runs.reset();
    state_->layouts.clear();
    state_->fitted.reset();
}

void UILabel::appearanceDidChange() {
    UIView::appearanceDidChange();
    forgetLayouts();
    setNeedsDisplay();
}

std::vector<TextRun> UILabel::resolvedRuns() const {
    if (!attributedText_) return {};
    NSParagraphStyle paragraph;
    paragraph.alignment = textAlignment_;
    paragraph.lineBreakMode = lineBreakMode_;
    return textRuns(*attributedText_, {.font = font_, .color = textColor_, .paragraph = paragraph},
                    traitCollection());
}

std::string UILabel::accessibilityLabel() const {
    auto const own = UIView::accessibilityLabel();
    return own.empty() ? text().value_or("") : own;
}

} // namespace trelundo
