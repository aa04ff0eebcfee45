#include "trelundo/platform/uikit/controllers/internal/AlertButton.h"

namespace trelundo {

namespace {

// Points.
constexpr double titleFontSize = 17;
constexpr double paddingSide = 8;

} // namespace

AlertButton::AlertButton(UIAlertAction& action, bool isEmphasised, std::function<void(UIAlertAction&)> chosen)
    : action_(&action)
    , chosen_(std::move(chosen)) {
    bool const destroys = action.style() == UIAlertActionStyle::destructive;
    setTitle(action.title(), UIControlState::normal);
    setTitleColor(destroys ? UIColor::systemRed() : UIColor::systemBlue(), UIControlState::normal);
    setTitleColor(UIColor::systemGray(), UIControlState::disabled);
    titleLabel()->setFont(font(isEmphasised));
    titleLabel()->setAdjustsFontSizeToFitWidth(true);
    titleLabel()->setMinimumScaleFactor(0.5);
    setContentEdgeInsets({0, paddingSide, 0, paddingSide});
    setEnabled(action.isEnabled());
    addTarget(this, &AlertButton::choose, UIControlEvents::touchUpInside);
}

UIFont AlertButton::font(bool isEmphasised) {
    return UIFont::system(titleFontSize, isEmphasised ? UIFont::Weight::semibold : UIFont::Weight::regular);
}

double AlertButton::titleWidth(UIAlertAction const& action, bool isEmphasised) {
    auto const label = make<UILabel>();
    label->setFont(font(isEmphasised));
    label->setText(action.title());
    return label->intrinsicContentSize().width + 2 * paddingSide;
}

void AlertButton::setHighlighted(bool highlighted) {
    UIButton::setHighlighted(highlighted);
    static UIColor const pressed = UIColor::dynamic([](UITraitCollection const& traits) {
        return UIColor::gray(traits.userInterfaceStyle == UIUserInterfaceStyle::dark ? 1 : 0, 0.1);
    });
    setBackgroundColor(highlighted ? std::optional(pressed) : std::nullopt);
}

void AlertButton::choose() {
    if (auto const action = action_.lock()) chosen_(*action);
}

} // namespace trelundo
