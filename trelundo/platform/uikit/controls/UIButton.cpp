#include "trelundo/platform/uikit/controls/UIButton.h"

#include "trelundo/platform/uikit/accessibility/TextChanges.h"
#include "trelundo/platform/uikit/controls/internal/UIButtonState.h"

namespace trelundo {

namespace {

constexpr double fadedAlpha = 0.2;
constexpr double fadeBackDuration = 0.25; // seconds

std::optional<Ref<UIImage>> optionalImage(Ref<UIImage> image) {
    return image ? std::optional{std::move(image)} : std::nullopt;
}

} // namespace

UIButton::UIButton(CGRect frame)
    : UIControl(frame)
    , state_(std::make_unique<State>()) {}

UIButton::UIButton(UIButtonType type)
    : UIButton(CGRect{}) {
    type_ = type;
}

UIButton::~UIButton() {
    // The host may keep the label longer than the button.
    if (state_->titleLabel) state_->titleLabel->becomeTitle(nullptr);
}

void UIButton::setTitle(std::optional<std::string> title, UIControlState state) {
    state_->titles.set(std::move(title), state);
    contentDidChange();
}

std::optional<std::string> UIButton::title(UIControlState state) const { return state_->titles.find(state); }

void UIButton::setAttributedTitle(std::optional<NSAttributedString> title, UIControlState state) {
    state_->attributedTitles.set(std::move(title), state);
    contentDidChange();
}

std::optional<NSAttributedString> UIButton::attributedTitle(UIControlState state) const {
    return state_->attributedTitles.find(state);
}

void UIButton::setTitleColor(std::optional<UIColor> color, UIControlState state) {
    state_->titleColors.set(std::move(color), state);
    contentDidChange();
}

UIColor UIButton::titleColor(UIControlState state) const {
    if (auto const color = state_->titleColors.find(state)) return *color;
    if (!isSystem()) return UIColor::white();
    bool const isDisabled = state == UIControlState::disabled;
    return isDisabled ? UIColor::gray() : tintColor();
}

void UIButton::setImage(Ref<UIImage> image, UIControlState state) {
    state_->images.set(optionalImage(std::move(image)), state);
    contentDidChange();
}

Ref<UIImage> UIButton::image(UIControlState state) const {
    return state_->images.find(state).value_or(nullptr);
}

void UIButton::setBackgroundImage(Ref<UIImage> image, UIControlState state) {
    state_->backgroundImages.set(optionalImage(std::move(image)), state);
    contentDidChange();
}

Ref<UIImage> UIButton::backgroundImage(UIControlState state) const {
    return state_->backgroundImages.find(state).value_or(nullptr);
}

Ref<UILabel> const& UIButton::titleLabel() {
    if (!state_->titleLabel) makeTitleLabel();
    return state_->titleLabel;
}

void UIButton::makeTitleLabel() {
    auto label = make<UILabel>();
    label->setFont(UIFont::system(isSystem() ? 15 : 18));
    label->setLineBreakMode(NSLineBreakMode::byTruncatingMiddle);
    label->becomeTitle([this] { sizeDidChange(); });
    label->setAlpha(partAlpha());
    state_->titleLabel = label;
    // Background, picture and title lie below whatever a subclass adds.
    insertSubview(label, (state_->backgroundView ? 1u : 0u) + (state_->imageView ? 1u : 0u));
    updateTitle();
}

Ref<UIImageView> const& UIButton::imageView() {
    if (!state_->imageView) makeImageView();
    return state_->imageView;
}

void UIButton::makeImageView() {
    state_->imageView = make<UIImageView>();
    state_->imageView->setAlpha(partAlpha());
    insertSubview(state_->imageView, state_->backgroundView ? 1 : 0);
    updateImage();
}

void UIButton::setContentEdgeInsets(UIEdgeInsets insets) {
    contentEdgeInsets_ = insets;
    sizeDidChange();
}

void UIButton::setTitleEdgeInsets(UIEdgeInsets insets) {
    titleEdgeInsets_ = insets;
    setNeedsLayout();
}

void UIButton::setImageEdgeInsets(UIEdgeInsets insets) {
    imageEdgeInsets_ = insets;
    setNeedsLayout();
}

void UIButton::setAdjustsImageWhenHighlighted(bool adjusts) {
    adjustsImageWhenHighlighted_ = adjusts;
    contentDidChange();
}

void UIButton::sizeDidChange() {
    invalidateIntrinsicContentSize();
    setNeedsLayout();
}

void UIButton::stateDidChange() {
    UIControl::stateDidChange();
    contentDidChange();
}

void UIButton::contentDidChange() {
    updateBackgroundImage();
    updateImage();
    updateTitle();
    updateHighlight();
    reportTitle();
}

void UIButton::updateTitle() {
    bool const isShown = currentAttributedTitle() || currentTitle();
    if (!state_->titleLabel && isShown) makeTitleLabel(); // which comes back here
    auto const& label = state_->titleLabel;
    if (!label) return;
    if (auto title = currentAttributedTitle()) {
        label->setTextColor(attributedTitleColor());
        label->setAttributedText(std::move(title));
    } else {
        label->setTextColor(currentTitleColor());
        label->setText(currentTitle());
    }
}

UIColor UIButton::attributedTitleColor() const { return isSystem() ? tintColor() : UIColor::black(); }

Ref<UIImage> UIButton::shownImage() const {
    auto const image = currentImage();
    if (!image || !isSystem() || image->renderingMode() != UIImageRenderingMode::automatic) return image;
    if (state_->templateSource != image) {
        state_->templateSource = image;
        state_->templateImage = image->withRenderingMode(UIImageRenderingMode::alwaysTemplate);
    }
    return state_->templateImage;
}

void UIButton::updateImage() {
    auto const image = shownImage();
    if (!state_->imageView && image) makeImageView(); // which comes back here
    auto const& view = state_->imageView;
    if (!view) return;
    if (view->image() != image) {
        view->setImage(image);
        sizeDidChange();
    }
    bool const hasOwnImage = state_->images.exact(state()) != nullptr;
    view->setDarkened(!isSystem() && isHighlighted() && adjustsImageWhenHighlighted_ && !hasOwnImage);
}

void UIButton::updateBackgroundImage() {
    auto const image = backgroundImage(state());
    if (!state_->backgroundView && image) {
        state_->backgroundView = make<UIImageView>(bounds());
        insertSubview(state_->backgroundView, 0);
    }
    if (!state_->backgroundView || state_->backgroundView->image() == image) return;
    state_->backgroundView->setImage(image);
    sizeDidChange();
}

void UIButton::updateHighlight() {
    bool const isFaded = isSystem() && isHighlighted();
    if (isFaded == state_->isFaded) return;
    state_->isFaded = isFaded;
    auto const apply = [this] {
        if (state_->titleLabel) state_->titleLabel->setAlpha(partAlpha());
        if (state_->imageView) state_->imageView->setAlpha(partAlpha());
    };
    if (isFaded || !window())
        apply();
    else
        animate({.duration = fadeBackDuration, .animations = apply});
}

double UIButton::partAlpha() const { return state_->isFaded ? fadedAlpha : 1; }

std::string UIButton::shownTitle() const {
    if (auto const title = currentAttributedTitle()) return title->string();
    return currentTitle().value_or("");
}

void UIButton::reportTitle() {
    auto title = shownTitle();
    if (title == state_->shownTitle) return;
    state_->shownTitle = title;
    if (isInVisibleWindow()) textDidChange(*this, title);
}

void UIButton::tintColorDidChange() {
    UIControl::tintColorDidChange();
    if (isSystem()) updateTitle();
}

std::string UIButton::accessibilityLabel() const {
    auto const own = UIControl::accessibilityLabel();
    if (!own.empty()) return own;
    if (auto title = shownTitle(); !title.empty()) return title;
    auto const image = currentImage();
    return image ? image->name() : "";
}

UIAccessibilityTraits UIButton::accessibilityTraits() const {
    auto traits = UIAccessibilityTraits::button;
    if (isSelected()) traits = traits | UIAccessibilityTraits::selected;
    if (!isEnabled()) traits = traits | UIAccessibilityTraits::notEnabled;
    return traits;
}

} // namespace trelundo
