#pragma once

#include "trelundo/platform/uikit/controllers/UIAlertAction.h"
#include "trelundo/platform/uikit/controls/UIButton.h"

#include <functional>

namespace trelundo {

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
