#include "trelundo/kit/screens/base/internal/ViewBuilding.h"

#include "trelundo/kit/common/Texts.h"
#include "trelundo/platform/uikit/controls/UIButton.h"

namespace trelundo {

Ref<UIStackView> makeVerticalStack(std::vector<Ref<UIView>> arranged) {
    auto stack = constraintDriven(make<UIStackView>(std::move(arranged)));
    stack->setAxis(NSLayoutConstraintAxis::vertical);
    return stack;
}

Ref<UILabel> makeShrinkingLabel(std::string_view key, UIFont font, UIColor color) {
    auto label = constraintDriven(make<UILabel>());
    label->setText(Texts::text(key));
    label->setFont(font);
    label->setTextColor(std::move(color));
    label->setAdjustsFontSizeToFitWidth(true);
    label->setMinimumScaleFactor(0.5);
    return label;
}

Ref<UIImageView> makeFillingPicture(std::string const& name) {
    auto picture = constraintDriven(make<UIImageView>());
    picture->setClipsToBounds(true);
    picture->setContentMode(UIViewContentMode::scaleAspectFill);
    picture->setImage(UIImage::named(name));
    // A picture takes the room that is left before anything else is stretched, and gives way before any text.
    picture->setContentHuggingPriority(1, NSLayoutConstraintAxis::vertical);
    picture->setContentCompressionResistancePriority(250, NSLayoutConstraintAxis::vertical);
    return picture;
}

Ref<UIImage> neverTinted(Ref<UIImage> const& image) {
    return image ? image->withRenderingMode(UIImageRenderingMode::alwaysOriginal) : nullptr;
}

Ref<UIButton> makeCloseButton(Ref<UIImage> const& image, double contentInset) {
    auto button = constraintDriven(make<UIButton>(UIButtonType::system));
    button->setContentEdgeInsets({contentInset, contentInset, contentInset, contentInset});
    button->setImage(image, UIControlState::normal);
    button->setAccessibilityLabel(Texts::text("Close"));
    return button;
}

} // namespace trelundo
