#include "trelundo/platform/uikit/layout/internal/LayoutEngine.h"

#include "trelundo/platform/uikit/layout/UILayoutGuide.h"
#include "trelundo/platform/uikit/layout/internal/Autoresizing.h"
#include "trelundo/platform/uikit/views/UIView.h"

namespace trelundo {

namespace {

bool isDirectional(NSLayoutAttribute attribute) {
    return attribute == NSLayoutAttribute::leading || attribute == NSLayoutAttribute::trailing;
}

/// Where on a side from minimum to maximum the attribute lies.
double fractionOf(NSLayoutAttribute attribute, bool rightToLeft) {
    switch (attribute) {
    case NSLayoutAttribute::leading:
        return rightToLeft ? 1 : 0;
    case NSLayoutAttribute::trailing:
        return rightToLeft ? 0 : 1;
    case NSLayoutAttribute::right:
    case NSLayoutAttribute::bottom:
    case NSLayoutAttribute::lastBaseline:
        return 1;
    case NSLayoutAttribute::centerX:
    case NSLayoutAttribute::centerY:
        return 0.5;
    default:
        return 0;
    }
}

Solver::Rule solverRule(NSLayoutRelation relation, std::vector<Solver::Term> const& terms, double constant,
                        double priority) {
    switch (relation) {
    case NSLayoutRelation::greaterThanOrEqual:
        return Solver::atLeast(terms, constant, priority);
    case NSLayoutRelation::lessThanOrEqual:
        return Solver::atMost(terms, constant, priority);
    default:
        return Solver::equal(terms, constant, priority);
    }
}

double solverPriority(UILayoutPriority priority) {
    return std::clamp(priority.value, 1e-3, Solver::required);
}

} // namespace

/// What the solver can work with: not a number counts as zero.
double LayoutEngine::sane(double points) {
    return std::isnan(points) ? 0 : std::clamp(points, -farAway, farAway);
}

unsigned LayoutEngine::directions(NSLayoutConstraint const& constraint) {
    auto const bit = [](NSLayoutAttribute attribute, UIView const* view) {
        return view && isDirectional(attribute) && view->isRightToLeft() ? 1u : 0u;
    };
    return bit(constraint.firstAttribute_, constraint.first_.view) |
           bit(constraint.secondAttribute_, constraint.second_.view) << 1;
}

/// A constraint on leading or trailing in a right-to-left layout is measured from the right, so that its
/// constant keeps its sense.
void LayoutEngine::addRule(NSLayoutConstraint& constraint) {
    if (constraint.engineId_ >= 0 || !constraint.isActive_) return;
    auto& ancestor = *constraint.owner_;
    unsigned const sides = directions(constraint);
    bool const isMirrored = isDirectional(constraint.firstAttribute_) ? (sides & 1) != 0 : (sides & 2) != 0;
    terms_.clear();
    addSide(constraint.first_, constraint.firstAttribute_, 1, isMirrored, ancestor);
    if (constraint.second_.view)
        addSide(constraint.second_, constraint.secondAttribute_, -constraint.multiplier_, isMirrored,
                ancestor);
    if (isMirrored && constraint.multiplier_ != 1)
        addLength({&ancestor, nullptr}, false, 1 - constraint.multiplier_);

    auto rule = solverRule(constraint.relation_, terms_, sane(constraint.constant_),
                           solverPriority(constraint.priority_));
    rule.takesPrecedence = constraint.takesPrecedence_;
    auto const handle = add(rule, {.constraint = &constraint, .view = nullptr, .part = {}, .reported = {}});
    if (freeRules_.empty()) {
        freeRules_.push_back(static_cast<int>(rules_.size()));
        rules_.emplace_back();
    }
    constraint.engineId_ = freeRules_.back();
    freeRules_.pop_back();
    rules_[static_cast<std::size_t>(constraint.engineId_)] = {&constraint, handle, sides};
    ++ruleCount_;
    LayoutNode::of(ancestor).engine = this;
}

void LayoutEngine::constantDidChange(NSLayoutConstraint const& constraint) {
    auto const& rule = rules_[static_cast<std::size_t>(constraint.engineId_)];
    solver_.setConstant(rule.handle, sane(constraint.constant_));
}

void LayoutEngine::addSide(Item const& item, NSLayoutAttribute attribute, double factor, bool mirrored,
                           UIView& ancestor) {
    switch (attribute) {
    case NSLayoutAttribute::width:
        return addLength(item, false, factor);
    case NSLayoutAttribute::height:
        return addLength(item, true, factor);
    case NSLayoutAttribute::firstBaseline:
        if (!item.guide) addTerm(variable(slotOf(*item.view), firstBaseline), factor);
        break;
    case NSLayoutAttribute::lastBaseline:
        if (!item.guide) addTerm(variable(slotOf(*item.view), lastBaseline), -factor);
        break;
    default:
        break;
    }
    bool const isVertical = attribute == NSLayoutAttribute::top || attribute == NSLayoutAttribute::bottom ||
                            attribute == NSLayoutAttribute::centerY ||
                            attribute == NSLayoutAttribute::firstBaseline ||
                            attribute == NSLayoutAttribute::lastBaseline;
    bool const isRightToLeft = isDirectional(attribute) && item.view->isRightToLeft();
    addPosition(item, isVertical, fractionOf(attribute, isRightToLeft), mirrored ? -factor : factor,
                ancestor);
}

/// factor x a point of the item in the ancestor's coordinates: the sum along the chain of superviews.
void LayoutEngine::addPosition(Item const& item, bool vertical, double fraction, double factor,
                               UIView& ancestor) {
    if (fraction != 0) addLength(item, vertical, fraction * factor);
    if (item.guide && item.guide->kind_ == UILayoutGuide::Kind::constrained)
        addTerm(variable(slotOf(*item.guide), vertical ? minY : minX), factor);
    else if (item.guide)
        addInset(item, vertical, false, factor);
    for (auto* view = item.view; view != &ancestor; view = view->superview_)
        addTerm(variable(slotOf(*view), vertical ? minY : minX), factor);
}

void LayoutEngine::addLength(Item const& item, bool vertical, double factor) {
    auto const measure = vertical ? height : width;
    if (item.guide && item.guide->kind_ == UILayoutGuide::Kind::constrained)
        return addTerm(variable(slotOf(*item.guide), measure), factor);
    addTerm(variable(slotOf(*item.view), measure), factor);
    if (!item.guide) return;
    addInset(item, vertical, false, -factor);
    addInset(item, vertical, true, -factor);
}

void LayoutEngine::addInset(Item const& item, bool vertical, bool far, double factor) {
    bool const isSafeArea = item.guide->kind_ == UILayoutGuide::Kind::safeArea;
    auto const measure =
        vertical ? (far ? (isSafeArea ? safeBottom : marginBottom) : (isSafeArea ? safeTop : marginTop))
                 : (far ? (isSafeArea ? safeRight : marginRight) : (isSafeArea ? safeLeft : marginLeft));
    addTerm(variable(slotOf(*item.view), measure), factor);
}

// Variables and what pins them.

Solver::Variable LayoutEngine::variable(int slot, Measure measure) {
    auto& measured = box(slot).measures[measure];
    if (measured.variable >= 0) return measured.variable;
    bool const isLength = measure == width || measure == height;
    measured.variable = solver_.addVariable(isLength ? Solver::Domain::nonNegative : Solver::Domain::any);
    bool const isSolved = measure <= height && box(slot).kind != Kind::placed;
    if (!isSolved) pin(slot, measure);
    return box(slot).measures[measure].variable;
}

/// A flexible view in a superview that is still to be solved follows its size; all else is a plain number.
void LayoutEngine::pin(int slot, Measure measure) {
    std::vector<Solver::Term> terms{{box(slot).measures[measure].variable, 1}};
    if (double const share = shareOfSuperview(box(slot), measure); share != 0) {
        auto const length = measure == minX || measure == width ? width : height;
        terms.push_back({variable(slotOf(*box(slot).view->superview_), length), -share});
    }
    auto rule = Solver::equal(terms, reading(box(slot), measure));
    rule.takesPrecedence = true;
    auto const part = measure <= height ? "frame" : measure <= marginRight ? "insets" : "baseline";
    auto const handle =
        add(rule, {.constraint = nullptr, .view = box(slot).view, .part = part, .reported = {}});
    box(slot).measures[measure].pin = handle;
}

double LayoutEngine::shareOfSuperview(Box const& box, Measure measure) const {
    auto const* const superview = box.view->superview_;
    if (measure > height || !superview || box.view == &root_) return 0;
    bool const isSolved =
        superview == &root_ ? purpose_ == Purpose::fitting : !superview->translatesAutoresizingMask_;
    if (!isSolved) return 0;
    bool const isVertical = measure == minY || measure == height;
    auto const& view = *box.view;
    auto const shares = autoresizingShares(view.autoresizingMask_, view.untransformedFrame(),
                                           superview->bounds().size, isVertical);
    return measure == minX || measure == minY ? shares.position : shares.length;
}

double LayoutEngine::reading(Box const& box, Measure measure) const {
    auto const& view = *box.view;
    auto const frame = view.untransformedFrame();
    auto const superviewSize = view.superview_ ? view.superview_->bounds().size : CGSize{};
    auto const share = shareOfSuperview(box, measure);
    switch (measure) {
    case minX:
        return sane(frame.origin.x - share * superviewSize.width);
    case minY:
        return sane(frame.origin.y - share * superviewSize.height);
    case width:
        return sane(std::max(frame.size.width, 0.0) - share * superviewSize.width);
    case height:
        return sane(std::max(frame.size.height, 0.0) - share * superviewSize.height);
    case safeTop:
        return view.safeAreaInsets().top;
    case safeLeft:
        return view.safeAreaInsets().left;
    case safeBottom:
        return view.safeAreaInsets().bottom;
    case safeRight:
        return view.safeAreaInsets().right;
    case marginTop:
        return sane(view.layoutMargins().top);
    case marginLeft:
        return sane(view.layoutMargins().left);
    case marginBottom:
        return sane(view.layoutMargins().bottom);
    case marginRight:
        return sane(view.layoutMargins().right);
    case firstBaseline:
        return sane(view.firstBaselineOffsetFromTop().value_or(0));
    case lastBaseline:
        return sane(view.lastBaselineOffsetFromBottom().value_or(0));
    case measureCount:
        break;
    }
    return 0;
}

void LayoutEngine::refreshPins(int slot, Measure first, Measure last) {
    auto const& box = this->box(slot);
    for (std::size_t measure = first; measure <= last; ++measure) {
        auto const pin = box.measures[measure].pin;
        if (pin >= 0) solver_.setConstant(pin, reading(box, static_cast<Measure>(measure)));
    }
}

// Intrinsic sizes.

void LayoutEngine::refreshContent(Box& box) {
    box.contentIsStale = false;
    if (box.kind != Kind::driven) return;
    auto const size = box.view->intrinsicContentSize();
    setContent(box, NSLayoutConstraintAxis::horizontal, size.width);
    setContent(box, NSLayoutConstraintAxis::vertical, size.height);
}

void LayoutEngine::setContent(Box& box, NSLayoutConstraintAxis axis, double length) {
    auto const i = static_cast<std::size_t>(axis);
    auto& content = box.content[i];
    if (length == UIView::noIntrinsicMetric) {
        if (content >= 0) solver_.remove(std::exchange(content, -1));
        return;
    }
    length = std::max(sane(length), 0.0);
    if (content >= 0) return solver_.setConstant(content, length);
    Solver::Term const term{
        box.measures[axis == NSLayoutConstraintAxis::horizontal ? width : height].variable, 1};
    Solver::Rule const rule{.terms = {&term, 1},
                            .constant = length,
                            .above = solverPriority(box.view->hugging_[i]),
                            .below = solverPriority(box.view->compression_[i])};
    content = add(rule, {.constraint = nullptr, .view = box.view, .part = "content size", .reported = {}});
}

} // namespace trelundo
