#include "trelundo/platform/uikit/layout/internal/StackArrangement.h"

namespace trelundo {

namespace {

using enum NSLayoutAttribute;

// Below every content size priority, in this order: a guide hugs its largest view, the stack hugs the guide,
// and views without a size of their own collapse.
constexpr double guideHugging = 51;
constexpr double canvasHugging = 49;
constexpr double collapsing = 25;
constexpr double settling = 24;
constexpr double guideTouching = 999.5;
constexpr double proportion = 999; // of the first view; one less for each following
constexpr double equalCentering = 149;

} // namespace

StackArrangement::StackArrangement(UIStackView& stack, std::function<double(UIView const&)> spacingAfter)
    : stack_(stack)
    , spacingAfter_(std::move(spacingAfter))
    , along_{leading, trailing, centerX, width}
    , across_{top, bottom, centerY, height}
    , canvas_(strong<NSObject>(stack))
    , closing_(stack.isHidden() ? 999.0 : 1000.0) {
    if (stack.axis() == NSLayoutConstraintAxis::vertical) std::swap(along_, across_);
    if (stack.isLayoutMarginsRelativeArrangement()) {
        canvas_ = stack.layoutMarginsGuide();
        for (auto const length : {width, height})
            relate(canvas_, length, NSLayoutRelation::greaterThanOrEqual, nullptr, notAnAttribute, 0,
                   closing_);
    }
    for (auto const& view : stack.arrangedSubviews())
        if (!view->isHidden()) visible_.push_back(view);
    placeHidden();
    if (visible_.empty()) return;
    arrangeAlong();
    arrangeAcross();
}

void StackArrangement::relate(Item const& first, NSLayoutAttribute attribute, NSLayoutRelation relation,
                              Item const& second, NSLayoutAttribute secondAttribute, double constant,
                              double priority, double multiplier) {
    auto constraint =
        make<NSLayoutConstraint>(NSLayoutConstraint::Parameters{.firstItem = first,
                                                                .firstAttribute = attribute,
                                                                .relation = relation,
                                                                .secondItem = second,
                                                                .secondAttribute = secondAttribute,
                                                                .multiplier = multiplier,
                                                                .constant = constant,
                                                                .priority = priority});
    constraint->setTakesPrecedence(true);
    constraints.push_back(std::move(constraint));
}

void StackArrangement::zero(Item const& item, NSLayoutAttribute length, double priority) {
    relate(item, length, NSLayoutRelation::equal, nullptr, notAnAttribute, 0, priority);
}

Ref<UILayoutGuide> StackArrangement::makeGuide(std::string_view identifier) {
    auto guide = make<UILayoutGuide>(std::string{identifier});
    stack_.addLayoutGuide(guide);
    guides.push_back(guide);
    return guide;
}

// Along the axis.

/// A hidden view stands, without length, where it would come, and influences nothing.
void StackArrangement::placeHidden() {
    Item previous;
    for (auto const& view : stack_.arrangedSubviews()) {
        if (view->isHidden()) {
            zero(view, along_.length, 1000);
            relate(view, along_.start, NSLayoutRelation::equal, previous ? previous : canvas_,
                   previous ? along_.end : along_.start);
            equal(view, across_.start, canvas_);
        }
        previous = view;
    }
}

void StackArrangement::arrangeAlong() {
    equal(visible_.front(), along_.start, canvas_);
    equal(visible_.back(), along_.end, canvas_, closing_);
    switch (stack_.distribution()) {
    case UIStackViewDistribution::fill:
        return arrangeFilling();
    case UIStackViewDistribution::fillEqually:
        arrangeFilling();
        for (std::size_t i = 1; i < visible_.size(); ++i) equal(visible_[i], along_.length, visible_.front());
        return;
    case UIStackViewDistribution::fillProportionally:
        arrangeFilling();
        return arrangeProportionally();
    case UIStackViewDistribution::equalSpacing:
        return arrangeSpaced(along_.end, along_.start, 1000);
    case UIStackViewDistribution::equalCentering:
        return arrangeSpaced(along_.center, along_.center, equalCentering);
    }
}

void StackArrangement::arrangeFilling() {
    for (std::size_t i = 1; i < visible_.size(); ++i)
        relate(visible_[i], along_.start, NSLayoutRelation::equal, visible_[i - 1], along_.end,
               spacingAfter_(*visible_[i - 1]));
}

double StackArrangement::proportionalLength(UIView& view) const {
    bool const isHorizontal = along_.length == width;
    auto const intrinsic = view.intrinsicContentSize();
    double const length = isHorizontal ? intrinsic.width : intrinsic.height;
    if (length != UIView::noIntrinsicMetric) return std::max(length, 0.0);
    auto const fitting = view.systemLayoutSizeFitting({});
    return isHorizontal ? fitting.width : fitting.height;
}

void StackArrangement::arrangeProportionally() {
    std::vector<double> lengths;
    double sum = 0;
    for (auto const& view : visible_) sum += lengths.emplace_back(proportionalLength(*view));
    for (std::size_t i = 0; i + 1 < visible_.size(); ++i) sum += spacingAfter_(*visible_[i]);
    if (sum <= 0) return;
    double priority = proportion;
    for (std::size_t i = 0; i < visible_.size(); ++i)
        relate(visible_[i], along_.length, NSLayoutRelation::equal, canvas_, along_.length, 0,
               std::max(priority--, 1.0), lengths[i] / sum);
}

/// Neighbours keep at least their spacing; what lies between `from` of one view and `to` of the next is
/// equal.
void StackArrangement::arrangeSpaced(NSLayoutAttribute from, NSLayoutAttribute to, double equalityPriority) {
    Item firstGap;
    for (std::size_t i = 1; i < visible_.size(); ++i) {
        auto const& previous = visible_[i - 1];
        auto const& next = visible_[i];
        relate(next, along_.start, NSLayoutRelation::greaterThanOrEqual, previous, along_.end,
               spacingAfter_(*previous));
        auto const gap = makeGuide("gap");
        relate(gap, along_.start, NSLayoutRelation::equal, previous, from);
        relate(gap, along_.end, NSLayoutRelation::equal, next, to);
        if (firstGap)
            equal(gap, along_.length, firstGap, equalityPriority);
        else
            firstGap = gap;
    }
    zero(canvas_, along_.length, canvasHugging);
}

// Across the axis.

void StackArrangement::arrangeAcross() {
    bool const isRow = across_.length == height;
    switch (stack_.alignment()) {
    case UIStackViewAlignment::fill:
        return alignFilling();
    case UIStackViewAlignment::leading:
        return alignToStart(across_);
    case UIStackViewAlignment::trailing:
        return alignToStart({across_.end, across_.start, across_.center, across_.length});
    case UIStackViewAlignment::center:
        return alignCentered();
    case UIStackViewAlignment::firstBaseline:
        return isRow ? alignBaselines(firstBaseline) : alignToStart(across_);
    case UIStackViewAlignment::lastBaseline:
        return isRow ? alignBaselines(lastBaseline) : alignToStart(across_);
    }
}

void StackArrangement::alignFilling() {
    equal(visible_.front(), across_.start, canvas_);
    equal(visible_.front(), across_.end, canvas_, closing_);
    for (std::size_t i = 1; i < visible_.size(); ++i) {
        equal(visible_[i], across_.start, visible_.front());
        equal(visible_[i], across_.end, visible_.front());
    }
}

/// `across` with its start and end exchanged aligns to the end.
void StackArrangement::alignToStart(Direction const& across) {
    auto const inside = across.start == across_.start ? NSLayoutRelation::greaterThanOrEqual
                                                      : NSLayoutRelation::lessThanOrEqual;
    auto const guide = makeGuide("span");
    equal(visible_.front(), across.start, canvas_);
    for (auto const& view : visible_) {
        if (view != visible_.front()) equal(view, across.start, visible_.front());
        equal(guide, across.start, view, guideTouching);
        relate(guide, across.end, inside, view, across.end);
    }
    equal(guide, across.end, canvas_, closing_);
    zero(guide, across.length, guideHugging);
    collapseAcross();
}

void StackArrangement::alignCentered() {
    for (auto const& view : visible_) equal(view, across_.center, canvas_);
    if (visible_.size() > 1) {
        contain();
    } else {
        auto const& view = visible_.front();
        relate(canvas_, across_.start, NSLayoutRelation::lessThanOrEqual, view, across_.start, 0, closing_);
        relate(view, across_.end, NSLayoutRelation::lessThanOrEqual, canvas_, across_.end, 0, closing_);
    }
    collapseAcross();
}

void StackArrangement::alignBaselines(NSLayoutAttribute baseline) {
    for (auto const& view : visible_)
        if (view != visible_.front()) equal(view, baseline, visible_.front());
    contain();
    // With room to spare the row settles at the edge that its baseline is counted from.
    auto const edge = baseline == firstBaseline ? across_.start : across_.end;
    for (auto const& view : visible_) equal(view, edge, canvas_, settling);
    collapseAcross();
}

/// A guide as large as the canvas around all views.
void StackArrangement::contain() {
    auto const guide = makeGuide("span");
    for (auto const& view : visible_) {
        relate(guide, across_.start, NSLayoutRelation::lessThanOrEqual, view, across_.start);
        relate(guide, across_.end, NSLayoutRelation::greaterThanOrEqual, view, across_.end);
    }
    equal(guide, across_.start, canvas_);
    equal(guide, across_.end, canvas_, closing_);
    zero(guide, across_.length, guideHugging);
}

void StackArrangement::collapseAcross() {
    zero(canvas_, across_.length, canvasHugging);
    for (auto const& view : visible_) zero(view, across_.length, collapsing);
}

} // namespace trelundo
