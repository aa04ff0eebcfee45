#pragma once

#include "trelundo/platform/uikit/controllers/UIAlertAction.h"
#include "trelundo/platform/uikit/controllers/UIViewController.h"

namespace trelundo {

enum class UIAlertControllerStyle : int { actionSheet = 0, alert = 1 };

/// A message in a card over everything, left by one of its actions. A tap dismisses it animated and then
/// calls the action's handler once; a dismissal by program calls none.
class UIAlertController : public UIViewController {
public:
    UIAlertController(std::optional<std::string> title, std::optional<std::string> message,
                      UIAlertControllerStyle style);
    ~UIAlertController() override;

    std::optional<std::string> const& alertTitle() const { return alertTitle_; }
    void setAlertTitle(std::optional<std::string> title);
    std::optional<std::string> const& message() const { return message_; }
    void setMessage(std::optional<std::string> message);
    UIAlertControllerStyle preferredStyle() const { return style_; }
    std::vector<Ref<UIAlertAction>> const& actions() const { return actions_; }
    /// A second cancel action ends the program.
    void addAction(Ref<UIAlertAction> action);
    Ref<UIAlertAction> preferredAction() const { return preferredAction_; }
    /// Must be one of the added actions, else the program ends.
    void setPreferredAction(Ref<UIAlertAction> action);

    /// What a tap on the action's button does. While the alert is still arriving the choice waits for its
    /// place on screen; a disabled or foreign action, or a second choice, does nothing.
    void performAction(UIAlertAction& action);
    /// The action that the user has chosen; null before, and after a dismissal by program.
    Ref<UIAlertAction> performedAction() const { return performedAction_; }
    /// Return: the preferred action, or the only one. Escape: the cancel action, or the only one.
    void performReturnKey() override;
    void performEscapeKey() override;

    void loadView() override;
    void viewDidLoad() override;
    void viewWillAppear(bool animated) override;
    void viewDidAppear(bool animated) override;
    void traitCollectionDidChange(UITraitCollection const* previous) override;

protected:
    void applyTransition(TransitionStage stage, UIView& carrier) override;
    double transitionDuration() const override;

private:
    struct State;

    void contentDidChange();
    void rebuildCard();
    void materialDidChange();
    void leave();
    Ref<UIAlertAction> actionWithStyle(UIAlertActionStyle style) const;
    Ref<UIAlertAction> onlyAction() const;
    bool isEmphasised(UIAlertAction const& action) const;
    std::vector<Ref<UIAlertAction>> orderedActions(bool sideBySide) const;
    bool fitsSideBySide() const;

    std::unique_ptr<State> state_;
    std::optional<std::string> alertTitle_;
    std::optional<std::string> message_;
    UIAlertControllerStyle style_;
    std::vector<Ref<UIAlertAction>> actions_;
    Ref<UIAlertAction> preferredAction_;
    Ref<UIAlertAction> performedAction_;
};

} // namespace trelundo
