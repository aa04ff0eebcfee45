#include "trelundo/kit/screens/subscription/PremiumV5ViewController.h"

#include "trelundo/kit/common/Pictures.h"
#include "trelundo/kit/common/internal/ViewFactory.h"
#include "trelundo/platform/uikit/layout/UILayoutGuide.h"

#include <algorithm>

namespace trelundo {

namespace {

/// A ticked row; its number names its views.
struct ChecklistRow {
    int number;
    char const* text;
};

constexpr std::array checklist{
    ChecklistRow{2, "Unlock all templates"},
    ChecklistRow{3, "Create from scratch"},
    ChecklistRow{4, "Royalty free music"},
    ChecklistRow{5, "Fonts and animations"},
    ChecklistRow{6, "Logos & graphics library"},
    ChecklistRow{7, "Transitions"},
    ChecklistRow{8, "Free stock photos and videos"},
    ChecklistRow{9, "Free family sharing"}, // only for whom it is meant
};

constexpr double rowSpacing = 14;
constexpr double trailingMargin = 16;
constexpr double gapBelowChecklist = 24;

double heightOf(UIStackView const& row) {
    double height = 0;
    for (auto const& view : row.arrangedSubviews())
        height = std::max(height, view->intrinsicContentSize().height);
    return height;
}

} // namespace

PremiumV5ViewController::PremiumV5ViewController() {
    setButtonColor({0.047058823529411764, 0.27058823529411763, 0.9490196078431372});
    setSelectedColor({0.12941176470588237, 0.12941176470588237, 0.1411764705882353});
}

void PremiumV5ViewController::viewDidLoad() {
    PlanPaywallViewController::viewDidLoad();
    addHeader(backgroundImageView(), unlockButton());
    addChecklist();
    addContent(unlockStackView()->bottomAnchor() + gapBelowChecklist);
    addDimmView();
}

void PremiumV5ViewController::addChecklist() {
    view()->addSubview(unlockStackView());
    auto const safeArea = view()->safeAreaLayoutGuide();
    activate({
        unlockStackView()->leadingAnchor() == safeArea->leadingAnchor() + 32,
        // Past the edge on purpose: only what would run off the screen itself shrinks.
        unlockStackView()->trailingAnchor() == safeArea->trailingAnchor() + 35,
    });
    for (auto const& row : unlockStackView()->arrangedSubviews())
        activate({row->trailingAnchor() <= safeArea->trailingAnchor() - trailingMargin});
}

/// Between the close button's foot and the plans, which stand where they do however long the checklist is.
double PremiumV5ViewController::roomForChecklist() {
    return contentStackView()->frame().minY() - gapBelowChecklist - closeButton()->frame().maxY();
}

void PremiumV5ViewController::viewDidLayoutSubviews() {
    PlanPaywallViewController::viewDidLayoutSubviews();
    double room = roomForChecklist() - unlock1Label()->intrinsicContentSize().height;
    for (auto const& view : unlockStackView()->arrangedSubviews()) {
        if (view == unlock1Label()) continue;
        room -= rowSpacing + heightOf(*cast<UIStackView>(view));
        if (view->isHidden() != (room < 0)) view->setHidden(room < 0);
    }
}

void PremiumV5ViewController::planButtonDidChange(PremiumV2Button& button) {
    button.layer().setBorderWidth(1);
    button.layer().setBorderColor({1, 1, 1, button.isSelected() ? 0.0 : 0.1});
}

Ref<UIImageView> const& PremiumV5ViewController::backgroundImageView() {
    return backgroundImageView_([this] {
        auto picture = makeFillingPicture("bg_vorlex");
        picture->setAlpha(isSmallScreen() ? 0.6 : 0.8);
        return picture;
    });
}

Ref<UIButton> const& PremiumV5ViewController::unlockButton() {
    return unlockButton_([this] { return makeRestoreLink(12); });
}

Ref<UILabel> const& PremiumV5ViewController::unlock1Label() {
    return unlock1Label_([] {
        return makeShrinkingLabel("Get Vorlex Pro", UIFont::system(36, UIFont::Weight::semibold),
                                  UIColor::white());
    });
}

Ref<UIStackView> const& PremiumV5ViewController::unlockStackView() {
    return unlockStackView_([this] {
        auto stack = makeVerticalStack({unlock1Label()});
        stack->setAlignment(UIStackViewAlignment::leading);
        stack->setSpacing(rowSpacing);
        for (std::size_t i = 0; i < checklist.size(); ++i)
            if (i + 1 < checklist.size() || source() == "FamilySharing")
                stack->addArrangedSubview(makeRow(i));
        return stack;
    });
}

Ref<UIStackView> PremiumV5ViewController::makeRow(std::size_t index) {
    auto const& row = checklist.at(index);
    auto const name = "unlock" + std::to_string(row.number);
    auto label = makeShrinkingLabel(row.text, UIFont::system(12, UIFont::Weight::regular), UIColor::white());
    auto stack = make<UIStackView>(std::vector<Ref<UIView>>{make<UIImageView>(Pictures::image("pro_check")),
                                                            named(name + "Label", label)});
    stack->setAlignment(UIStackViewAlignment::top);
    stack->setSpacing(13);
    return named(name + "StackView", stack);
}

} // namespace trelundo
