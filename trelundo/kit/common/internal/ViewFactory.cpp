#include "trelundo/kit/common/internal/ViewFactory.h"

#include "trelundo/kit/common/Texts.h"

namespace trelundo {

Ref<UIStackView> makeVerticalStack(std::vector<Ref<UIView>> arranged) {
    auto stack = usingAutoLayout(make<UIStackView>(std::move(arranged)));
    stack->setAxis(NSLayoutConstraintAxis::vertical);
    return stack;
}

Ref<UILabel> makeLabel(NSTextAlignment alignment) {
    auto label = usingAutoLayout(make<UILabel>());
    label->setTextAlignment(alignment);
    return label;
}

Ref<UILabel> makeShrinkingLabel(std::string_view key, UIFont font, UIColor color) {
    auto label = usingAutoLayout(make<UILabel>());
    label->setText(Texts::text(key));
    label->setFont(font);
    label->setTextColor(std::move(color));
    shrinkToFit(*label);
    return label;
}

Ref<UIImageView> makePicture(Ref<UIImage> image, UIViewContentMode contentMode) {
    auto picture = usingAutoLayout(make<UIImageView>());
    picture->setContentMode(contentMode);
    picture->setImage(std::move(image));
    return picture;
}

Ref<UIImageView> makeFillingPicture(std::string const& name) {
    auto picture = makePicture(UIImage::named(name), UIViewContentMode::scaleAspectFill);
    picture->setClipsToBounds(true);
    // A picture takes the room that is left before anything else is stretched, and gives way before any text.
    picture->setContentHuggingPriority(1, NSLayoutConstraintAxis::vertical);
    picture->setContentCompressionResistancePriority(250, NSLayoutConstraintAxis::vertical);
    return picture;
}

Ref<UIButton> makeCloseButton(Ref<UIImage> const& image, double contentInset) {
    auto button = usingAutoLayout(make<UIButton>(UIButtonType::system));
    button->setContentEdgeInsets({contentInset, contentInset, contentInset, contentInset});
    button->setImage(image, UIControlState::normal);
    button->setAccessibilityLabel(Texts::text("Close"));
    return button;
}

} // namespace trelundo
