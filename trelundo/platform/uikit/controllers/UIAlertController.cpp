#include "trelundo/platform/uikit/controllers/UIAlertController.h"

#include "trelundo/platform/foundation/FatalError.h"
#include "trelundo/platform/uikit/controllers/internal/AlertButton.h"
#include "trelundo/platform/uikit/controllers/internal/AlertText.h"
#include "trelundo/platform/uikit/layout/NSLayoutAnchor.h"
#include "trelundo/platform/uikit/layout/UILayoutGuide.h"

#include <algorithm>

namespace trelundo {

struct UIAlertController::State {
    Ref<UIView> dimming;
    Ref<UIView> card;
};

namespace {

constexpr double cardRadius = 14; // points
constexpr double cardMargin = 8;  // least distance from the edges of the safe area
constexpr double alertButtonHeight = 44;
constexpr double sheetButtonHeight = 57;
constexpr double fadeDuration = 0.25; // seconds
constexpr double arrivalScale = 1.2;

bool isDark(UITraitCollection const& traits) {
    return traits.userInterfaceStyle == UIUserInterfaceStyle::dark;
}

UIColor dimmingColor() {
    return UIColor::dynamic(
        [](UITraitCollection const& traits) { return UIColor::gray(0, isDark(traits) ? 0.48 : 0.2); });
}

UIColor separatorColor() {
    return UIColor::dynamic([](UITraitCollection const& traits) {
        return isDark(traits) ? UIColor(0.33, 0.33, 0.35, 0.6) : UIColor(0.24, 0.24, 0.26, 0.36);
    });
}

CALayer::BackdropEffect material(UITraitCollection const& traits) {
    return {20, 1.8, isDark(traits) ? CGColor{0.2, 0.2, 0.21, 0.86} : CGColor{0.97, 0.97, 0.97, 0.8}};
}

/// On a black ground no shade of a dark card is told from it without an edge.
CGColor edgeColor(UITraitCollection const& traits) { return {1, 1, 1, isDark(traits) ? 0.25 : 0.0}; }

/// Fills the window behind an alert's card; what is touched beside the card goes nowhere.
class AlertBackground : public UIView {
public:
    using UIView::UIView;
    UIResponder* nextResponder() const override { return nullptr; }
};

/// Stacks rows below one another in a card, each under a hairline.
class CardRows {
public:
    CardRows(UIView& card, UIView& text, double rowHeight)
        : card_(card)
        , last_(strong(text))
        , rowHeight_(rowHeight)
        , hairline_(1 / card.traitCollection().displayScale) {}

    /// One button, or two side by side in the reading direction.
    void add(std::vector<Ref<AlertButton>> const& buttons) {
        auto const line = addLine();
        activate({line->topAnchor() == last_->bottomAnchor(), line->leadingAnchor() == card_.leadingAnchor(),
                  line->trailingAnchor() == card_.trailingAnchor(), line->heightAnchor() == hairline_});
        for (auto const& button : buttons) {
            button->setTranslatesAutoresizingMaskIntoConstraints(false);
            card_.addSubview(button);
            activate(
                {button->topAnchor() == line->bottomAnchor(), button->heightAnchor() == rowHeight_,
                 button->widthAnchor() == card_.widthAnchor() * (1.0 / static_cast<double>(buttons.size()))});
        }
        activate({buttons.front()->leadingAnchor() == card_.leadingAnchor(),
                  buttons.back()->trailingAnchor() == card_.trailingAnchor()});
        if (buttons.size() == 2) addDivider(*line);
        last_ = buttons.front();
    }

    void close() { activate({last_->bottomAnchor() == card_.bottomAnchor()}); }

private:
    Ref<UIView> addLine() {
        auto line = make<UIView>();
        line->setTranslatesAutoresizingMaskIntoConstraints(false);
        line->setBackgroundColor(separatorColor());
        line->setUserInteractionEnabled(false);
        card_.addSubview(line);
        return line;
    }

    void addDivider(UIView& line) {
        auto const divider = addLine();
        activate({divider->topAnchor() == line.bottomAnchor(), divider->heightAnchor() == rowHeight_,
                  divider->widthAnchor() == hairline_, divider->centerXAnchor() == card_.centerXAnchor()});
    }

    UIView& card_;
    Ref<UIView> last_;
    double rowHeight_;
    double hairline_;
};

} // namespace

UIAlertController::UIAlertController(std::optional<std::string> title, std::optional<std::string> message,
                                     UIAlertControllerStyle style)
    : state_(std::make_unique<State>())
    , alertTitle_(std::move(title))
    , message_(std::move(message))
    , style_(style) {
    setModalPresentationStyle(UIModalPresentationStyle::custom);
}

UIAlertController::~UIAlertController() = default;

void UIAlertController::setAlertTitle(std::optional<std::string> title) {
    alertTitle_ = std::move(title);
    contentDidChange();
}

void UIAlertController::setMessage(std::optional<std::string> message) {
    message_ = std::move(message);
    contentDidChange();
}

void UIAlertController::addAction(Ref<UIAlertAction> action) {
    if (!action) return;
    if (action->style() == UIAlertActionStyle::cancel && actionWithStyle(UIAlertActionStyle::cancel))
        fatalError("An alert can have one cancel action at most.");
    action->enabledDidChange_ = [alert = Weak<UIAlertController>{this}] {
        if (auto const shown = alert.lock()) shown->contentDidChange();
    };
    actions_.push_back(std::move(action));
    contentDidChange();
}

void UIAlertController::setPreferredAction(Ref<UIAlertAction> action) {
    if (action && std::ranges::find(actions_, action) == actions_.end())
        fatalError("The preferred action of an alert must be one of its actions.");
    preferredAction_ = std::move(action);
    contentDidChange();
}

Ref<UIAlertAction> UIAlertController::actionWithStyle(UIAlertActionStyle style) const {
    auto const found = std::ranges::find(actions_, style, [](auto const& action) { return action->style(); });
    return found == actions_.end() ? nullptr : *found;
}

Ref<UIAlertAction> UIAlertController::onlyAction() const {
    return actions_.size() == 1 ? actions_.front() : nullptr;
}

// Choosing.

void UIAlertController::performAction(UIAlertAction& action) {
    auto const found = std::ranges::find(actions_, &action, &Ref<UIAlertAction>::get);
    if (found == actions_.end() || !action.isEnabled() || performedAction_) return;
    if (!presentingViewController() || isBeingDismissed()) return;
    performedAction_ = *found;
    if (!isInTransition_) leave();
}

void UIAlertController::leave() {
    auto const action = performedAction_;
    presentingViewController()->dismiss(true, [action] {
        if (action->handler_) action->handler_(*action);
    });
}

void UIAlertController::performReturnKey() {
    if (auto action = preferredAction_ ? preferredAction_ : onlyAction()) performAction(*action);
}

void UIAlertController::performEscapeKey() {
    auto const cancel = actionWithStyle(UIAlertActionStyle::cancel);
    if (auto action = cancel ? cancel : onlyAction()) performAction(*action);
}

void UIAlertController::viewWillAppear(bool animated) {
    UIViewController::viewWillAppear(animated);
    performedAction_ = nullptr;
}

void UIAlertController::viewDidAppear(bool animated) {
    UIViewController::viewDidAppear(animated);
    if (performedAction_) leave();
}

// Appearance.

void UIAlertController::loadView() { setView(make<AlertBackground>()); }

void UIAlertController::viewDidLoad() {
    UIViewController::viewDidLoad();
    auto const& root = view();
    auto const dimming = state_->dimming = make<UIView>();
    dimming->setTranslatesAutoresizingMaskIntoConstraints(false);
    dimming->setBackgroundColor(dimmingColor());
    root->addSubview(dimming);

    auto const card = state_->card = make<UIView>();
    card->setTranslatesAutoresizingMaskIntoConstraints(false);
    card->setClipsToBounds(true);
    card->layer().setCornerRadius(cardRadius);
    root->addSubview(card);

    auto const area = root->safeAreaLayoutGuide();
    activate({
        dimming->leftAnchor() == root->leftAnchor(),
        dimming->rightAnchor() == root->rightAnchor(),
        dimming->topAnchor() == root->topAnchor(),
        dimming->bottomAnchor() == root->bottomAnchor(),
        card->widthAnchor() == AlertText::width,
        card->centerXAnchor() == area->centerXAnchor(),
        card->topAnchor() >= area->topAnchor() + cardMargin,
        (card->bottomAnchor() <= area->bottomAnchor() - cardMargin).at(999),
    });
    bool const isAlert = style_ == UIAlertControllerStyle::alert;
    if (isAlert)
        activate({(card->centerYAnchor() == area->centerYAnchor()).at(998)});
    else
        activate({(card->bottomAnchor() == area->bottomAnchor() - cardMargin).at(998)});
    materialDidChange();
    rebuildCard();
}

void UIAlertController::contentDidChange() {
    if (isViewLoaded() && state_->card) rebuildCard();
}

void UIAlertController::rebuildCard() {
    auto const card = state_->card;
    while (!card->subviews().empty()) card->subviews().back()->removeFromSuperview();
    auto const text = make<AlertText>();
    text->setTranslatesAutoresizingMaskIntoConstraints(false);
    text->setTexts(alertTitle_, message_);
    card->addSubview(text);
    activate({text->topAnchor() == card->topAnchor(), text->leftAnchor() == card->leftAnchor(),
              text->rightAnchor() == card->rightAnchor()});

    bool const isAlert = style_ == UIAlertControllerStyle::alert;
    bool const sideBySide = isAlert && fitsSideBySide();
    auto const choose = [alert = Weak<UIAlertController>{this}](UIAlertAction& action) {
        if (auto const shown = alert.lock()) shown->performAction(action);
    };
    CardRows rows(*card, *text, isAlert ? alertButtonHeight : sheetButtonHeight);
    std::vector<Ref<AlertButton>> row;
    for (auto const& action : orderedActions(sideBySide)) {
        row.push_back(make<AlertButton>(*action, isEmphasised(*action), choose));
        if (sideBySide && row.size() < 2) continue;
        rows.add(row);
        row.clear();
    }
    rows.close();
}

/// The preferred action is emphasised in place of the cancel action.
bool UIAlertController::isEmphasised(UIAlertAction const& action) const {
    if (preferredAction_ && style_ == UIAlertControllerStyle::alert) return preferredAction_.get() == &action;
    return action.style() == UIAlertActionStyle::cancel;
}

bool UIAlertController::fitsSideBySide() const {
    return actions_.size() == 2 && std::ranges::all_of(actions_, [this](auto const& action) {
               return AlertButton::titleWidth(*action, isEmphasised(*action)) <= AlertText::width / 2;
           });
}

/// A cancel action stands first beside another one and last in a stack.
std::vector<Ref<UIAlertAction>> UIAlertController::orderedActions(bool sideBySide) const {
    auto ordered = actions_;
    std::ranges::stable_partition(ordered, [sideBySide](auto const& action) {
        return (action->style() == UIAlertActionStyle::cancel) == sideBySide;
    });
    return ordered;
}

void UIAlertController::traitCollectionDidChange(UITraitCollection const* previous) {
    UIViewController::traitCollectionDidChange(previous);
    if (isViewLoaded()) materialDidChange();
}

void UIAlertController::materialDidChange() {
    auto& layer = state_->card->layer();
    layer.setBackdropEffect(material(traitCollection()));
    layer.setBorderWidth(1 / std::max(traitCollection().displayScale, 1.0));
    layer.setBorderColor(edgeColor(traitCollection()));
}

double UIAlertController::transitionDuration() const { return fadeDuration; }

void UIAlertController::applyTransition(TransitionStage stage, UIView& /*carrier*/) {
    bool const isShown = stage == TransitionStage::shown;
    state_->dimming->setAlpha(isShown ? 1 : 0);
    state_->card->setAlpha(isShown ? 1 : 0);
    bool const scales = stage == TransitionStage::arriving;
    state_->card->setTransform(scales ? CGAffineTransform::scale(arrivalScale, arrivalScale)
                                      : CGAffineTransform{});
}

} // namespace trelundo
