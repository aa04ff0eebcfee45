#include "trelundo/platform/uikit/layout/UIStackView.h"

#include "trelundo/platform/uikit/layout/internal/StackArrangement.h"

namespace trelundo {

struct UIStackView::State {
    bool isStale = true;
    std::vector<std::pair<Weak<UIView>, double>> customSpacings;
    std::vector<Ref<NSLayoutConstraint>> constraints;
    std::vector<Ref<UILayoutGuide>> guides;
};

UIStackView::UIStackView(std::vector<Ref<UIView>> arrangedSubviews)
    : state_(std::make_unique<State>()) {
    for (auto& view : arrangedSubviews) addArrangedSubview(std::move(view));
}

UIStackView::~UIStackView() = default;

// The arrangement.

void UIStackView::addArrangedSubview(Ref<UIView> view) {
    insertArrangedSubview(std::move(view), arrangedSubviews_.size());
}

void UIStackView::insertArrangedSubview(Ref<UIView> view, std::size_t index) {
    if (!view || isDescendantOf(*view)) return;
    std::erase(arrangedSubviews_, view);
    view->setTranslatesAutoresizingMaskIntoConstraints(false);
    if (view->superview() != this) addSubview(view);
    index = std::min(index, arrangedSubviews_.size());
    arrangedSubviews_.insert(arrangedSubviews_.begin() + static_cast<std::ptrdiff_t>(index), std::move(view));
    arrangementDidChange();
}

void UIStackView::removeArrangedSubview(UIView& view) {
    auto const isView = [&view](Ref<UIView> const& arranged) { return arranged.get() == &view; };
    if (std::erase_if(arrangedSubviews_, isView) > 0) arrangementDidChange();
}

void UIStackView::willRemoveSubview(UIView& view) {
    UIView::willRemoveSubview(view);
    removeArrangedSubview(view);
}

// Properties.

void UIStackView::setAxis(NSLayoutConstraintAxis axis) {
    axis_ = axis;
    arrangementDidChange();
}

void UIStackView::setDistribution(UIStackViewDistribution distribution) {
    distribution_ = distribution;
    arrangementDidChange();
}

void UIStackView::setAlignment(UIStackViewAlignment alignment) {
    alignment_ = alignment;
    arrangementDidChange();
}

void UIStackView::setSpacing(double spacing) {
    spacing_ = spacing;
    arrangementDidChange();
}

void UIStackView::setCustomSpacing(double spacing, UIView& afterView) {
    auto& customSpacings = state_->customSpacings;
    std::erase_if(customSpacings,
                  [&afterView](auto const& custom) { return custom.first.refersTo(afterView); });
    customSpacings.emplace_back(&afterView, spacing);
    arrangementDidChange();
}

double UIStackView::spacingAfter(UIView const& view) const {
    for (auto const& [spaced, spacing] : state_->customSpacings)
        if (spaced.refersTo(view)) return spacing;
    return spacing_;
}

void UIStackView::setLayoutMarginsRelativeArrangement(bool relative) {
    isLayoutMarginsRelative_ = relative;
    arrangementDidChange();
}

void UIStackView::setHidden(bool hidden) {
    bool const changes = hidden != isHidden();
    UIView::setHidden(hidden);
    if (changes) arrangementDidChange();
}

// Constraints.

void UIStackView::arrangementDidChange() {
    state_->isStale = true;
    setNeedsUpdateConstraints();
    setNeedsLayout();
}

void UIStackView::subviewHiddenDidChange(UIView& /*view*/) { arrangementDidChange(); }

/// Only proportions are read from the contents; all else follows through the content sizes.
void UIStackView::subviewContentSizeDidChange(UIView& /*view*/) {
    if (distribution_ == UIStackViewDistribution::fillProportionally) arrangementDidChange();
}

void UIStackView::updateConstraints() {
    UIView::updateConstraints();
    if (!std::exchange(state_->isStale, false)) return;
    NSLayoutConstraint::deactivate(state_->constraints);
    for (auto const& guide : state_->guides) removeLayoutGuide(*guide);
    StackArrangement made(*this, [this](UIView const& view) { return spacingAfter(view); });
    state_->constraints = std::move(made.constraints);
    state_->guides = std::move(made.guides);
    NSLayoutConstraint::activate(state_->constraints);
}

} // namespace trelundo
