#include "trelundo/platform/uikit/views/UIVisualEffectView.h"

namespace trelundo {

namespace {

constexpr CALayer::BackdropEffect extraLightBackdrop{20, 1.8, {0.97, 0.97, 0.97, 0.82}};
constexpr CALayer::BackdropEffect lightBackdrop{30, 1.8, {1, 1, 1, 0.3}};
constexpr CALayer::BackdropEffect darkBackdrop{20, 1.8, {0.11, 0.11, 0.11, 0.73}};

} // namespace

CALayer::BackdropEffect UIBlurEffect::backdrop(UITraitCollection const& traits) const {
    switch (style_) {
    case UIBlurEffectStyle::extraLight:
        return extraLightBackdrop;
    case UIBlurEffectStyle::light:
        return lightBackdrop;
    case UIBlurEffectStyle::dark:
        return darkBackdrop;
    case UIBlurEffectStyle::regular:
    case UIBlurEffectStyle::prominent:
        break;
    }
    return traits.userInterfaceStyle == UIUserInterfaceStyle::dark ? darkBackdrop : lightBackdrop;
}

UIVisualEffectView::UIVisualEffectView(std::optional<UIBlurEffect> effect)
    : effect_(effect)
    , contentView_(make<UIView>()) {
    addSubview(contentView_);
    effectDidChange();
}

void UIVisualEffectView::setEffect(std::optional<UIBlurEffect> effect) {
    effect_ = effect;
    effectDidChange();
}

void UIVisualEffectView::layoutSubviews() {
    UIView::layoutSubviews();
    contentView_->setFrame(bounds());
}

void UIVisualEffectView::appearanceDidChange() {
    UIView::appearanceDidChange();
    effectDidChange();
}

void UIVisualEffectView::effectDidChange() {
    layer().setBackdropEffect(effect_ ? std::optional{effect_->backdrop(traitCollection())} : std::nullopt);
}

} // namespace trelundo
