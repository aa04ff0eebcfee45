#pragma once

#include "trelundo/platform/uikit/collection/UIScrollView.h"
#include "trelundo/platform/uikit/controllers/UIAlertAction.h"
#include "trelundo/platform/uikit/controls/UIButton.h"

namespace trelundo {

/// Fills the window behind an alert's card; what is touched beside the card goes nowhere.
class AlertBackground : public UIView {
public:
    using UIView::UIView;
    UIResponder* nextResponder() const override { return nullptr; }
};

/// Title and message of an alert; scrolls when they do not fit.
class AlertText : public UIScrollView {
public:
    static constexpr double width = 270; // points

    /// An absent or empty text takes no line. Without a title the message stands in its place and weight.
    void setTexts(std::optional<std::string> const& title, std::optional<std::string> const& message);

    CGSize intrinsicContentSize() const override;
    void layoutSubviews() override;

private:
    Ref<UILabel> addLabel(std::string const& text, UIFont font);

    std::vector<Ref<UILabel>> labels_;
};

/// The button of one action.
class AlertButton : public UIButton {
public:
    /// `chosen` runs with the action when the button is tapped.
    AlertButton(UIAlertAction& action, bool isEmphasised, std::function<void(UIAlertAction&)> chosen);

    static UIFont font(bool isEmphasised);
    /// The width in points that an action's title takes on one line.
    static double titleWidth(UIAlertAction const& action, bool isEmphasised);

    void setHighlighted(bool highlighted) override;

private:
    void choose();

    Weak<UIAlertAction> action_;
    std::function<void(UIAlertAction&)> chosen_;
};

} // namespace trelundo
