#include "trelundo/platform/uikit/layout/internal/LayoutEngine.h"

#include "trelundo/platform/uikit/layout/UILayoutGuide.h"
#include "trelundo/platform/uikit/views/UIView.h"

namespace trelundo {

LayoutEngine::LayoutEngine(UIView& root, Purpose purpose)
    : root_(root)
    , purpose_(purpose)
    , isRightToLeft_(applicationIsRightToLeft()) {
    addedSubtrees_.push_back(&root);
}

LayoutEngine::~LayoutEngine() { reset(); }

UIView& LayoutEngine::rootOf(UIView const& view) {
    auto const* root = &view;
    while (root->superview_) root = root->superview_;
    return const_cast<UIView&>(*root);
}

LayoutEngine& LayoutEngine::of(UIView& view) {
    auto& root = rootOf(view);
    auto& node = LayoutNode::of(root);
    if (!node.ownEngine) node.ownEngine = std::make_unique<LayoutEngine>(root);
    return *node.ownEngine;
}

LayoutEngine* LayoutEngine::existing(UIView const& view) {
    auto const* node = LayoutNode::existing(rootOf(view));
    return node ? node->ownEngine.get() : nullptr;
}

void LayoutEngine::reset() {
    for (auto& box : boxes_) {
        if (box.guide) box.guide->layoutSlot_ = -1;
        if (box.node) {
            box.node->engine = nullptr;
            box.node->slot = -1;
        }
    }
    for (auto& rule : rules_) {
        if (!rule.constraint) continue;
        rule.constraint->engineId_ = -1;
        if (auto* node = LayoutNode::existing(*rule.constraint->owner_); node->slot < 0)
            node->engine = nullptr;
    }
    solver_ = {};
    boxes_.clear();
    freeSlots_.clear();
    rules_.clear();
    freeRules_.clear();
    ruleCount_ = 0;
    sources_.clear();
    reported_.clear();
    activated_.clear();
    addedSubtrees_.assign(1, &root_);
}

// Boxes.

int LayoutEngine::takeSlot() {
    if (freeSlots_.empty()) {
        boxes_.emplace_back();
        return static_cast<int>(boxes_.size()) - 1;
    }
    int const slot = freeSlots_.back();
    freeSlots_.pop_back();
    return slot;
}

int LayoutEngine::slotOf(UIView& view) {
    auto& node = LayoutNode::of(view);
    if (node.slot >= 0) return node.slot;
    int const slot = node.slot = takeSlot();
    node.engine = this;
    box(slot).view = &view;
    box(slot).node = &node;
    bool const isRoot = &view == &root_;
    bool const isDriven = isRoot ? purpose_ == Purpose::fitting : !view.translatesAutoresizingMask_;
    box(slot).kind = isDriven ? Kind::driven : Kind::placed;
    if (!isDriven) return slot;
    for (auto const measure : {minX, minY, width, height}) variable(slot, measure);
    refreshContent(box(slot));
    return slot;
}

int LayoutEngine::slotOf(UILayoutGuide& guide) {
    if (guide.layoutSlot_ >= 0) return guide.layoutSlot_;
    int const slot = guide.layoutSlot_ = takeSlot();
    box(slot).kind = Kind::guide;
    box(slot).view = guide.owningView_;
    box(slot).guide = &guide;
    for (auto const measure : {minX, minY, width, height}) variable(slot, measure);
    return slot;
}

void LayoutEngine::removeConstraintsOf(Box& box) {
    for (auto& measured : box.measures)
        if (measured.pin >= 0) solver_.remove(std::exchange(measured.pin, -1));
    for (auto& content : box.content)
        if (content >= 0) solver_.remove(std::exchange(content, -1));
}

void LayoutEngine::removeBox(int slot) {
    for (auto const& measured : box(slot).measures)
        if (measured.variable >= 0) solver_.removeVariable(measured.variable);
    if (box(slot).guide) box(slot).guide->layoutSlot_ = -1;
    box(slot) = {};
    freeSlots_.push_back(slot);
}

// The tree.

void LayoutEngine::subtreeWasAdded(UIView& view) { addedSubtrees_.push_back(&view); }

void LayoutEngine::scan(UIView& view) {
    if (&view != &root_ && !view.translatesAutoresizingMask_) slotOf(view);
    for (auto const& constraint : view.constraints_) found_.push_back(constraint.get());
    for (auto const& child : view.subviews_) scan(*child);
}

void LayoutEngine::updateTree() {
    for (auto const& subtree : std::exchange(addedSubtrees_, {})) {
        if (auto const view = subtree.lock(); view && view->isDescendantOf(root_)) scan(*view);
    }
    for (auto const& activated : std::exchange(activated_, {})) {
        auto const constraint = activated.lock();
        if (constraint && constraint->owner_ && constraint->owner_->isDescendantOf(root_))
            found_.push_back(constraint.get());
    }
    // The one activated last gives way in a conflict, whatever the order in the tree.
    std::ranges::sort(found_, {}, &NSLayoutConstraint::activation_);
    for (auto* constraint : found_) addRule(*constraint);
    found_.clear();
}

namespace {

void collect(UIView& view, std::vector<UIView*>& views) {
    views.push_back(&view);
    for (auto const& child : view.subviews()) collect(*child, views);
}

} // namespace

void LayoutEngine::subtreeWillBeRemoved(UIView& view) {
    std::vector<UIView*> views;
    collect(view, views);
    std::size_t leavingRules = 0;
    for (auto const* member : views) leavingRules += member->constraints_.size();
    // Taking constraints out one by one costs more than making the few that stay anew.
    if (leavingRules > 16 && leavingRules * 2 > ruleCount_) return reset();
    for (auto const* member : views) {
        for (auto const& constraint : member->constraints_) removeConstraint(*constraint);
    }
    std::vector<int> slots;
    for (auto* member : views) {
        auto* const node = LayoutNode::existing(*member);
        if (!node) continue;
        if (int const slot = std::exchange(node->slot, -1); slot >= 0) slots.push_back(slot);
        for (auto const& guide : member->layoutGuides_)
            if (guide->layoutSlot_ >= 0) slots.push_back(guide->layoutSlot_);
        node->engine = nullptr;
    }
    for (int const slot : slots) removeConstraintsOf(box(slot));
    for (int const slot : slots) removeBox(slot);
}

void LayoutEngine::removeGuide(UILayoutGuide& guide) {
    if (guide.layoutSlot_ < 0) return;
    removeConstraintsOf(box(guide.layoutSlot_));
    removeBox(guide.layoutSlot_);
}

// Constraints.

void LayoutEngine::constraintWasActivated(NSLayoutConstraint& constraint) {
    activated_.push_back(&constraint);
}

Solver::Constraint LayoutEngine::add(Solver::Rule const& rule, Source source) {
    auto const handle = solver_.add(rule);
    if (static_cast<std::size_t>(handle) >= sources_.size())
        sources_.resize(static_cast<std::size_t>(handle) + 1);
    sources_[static_cast<std::size_t>(handle)] = std::move(source);
    return handle;
}

void LayoutEngine::removeConstraint(NSLayoutConstraint& constraint) {
    if (constraint.engineId_ < 0) return;
    auto& rule = rules_[static_cast<std::size_t>(constraint.engineId_)];
    solver_.remove(rule.handle);
    rule = {};
    --ruleCount_;
    freeRules_.push_back(std::exchange(constraint.engineId_, -1));
}

void LayoutEngine::priorityDidChange(NSLayoutConstraint& constraint) {
    removeConstraint(constraint);
    constraintWasActivated(constraint);
}

// What is read from views.

void LayoutEngine::frameDidChange(LayoutNode const& node) {
    if (box(node.slot).kind == Kind::placed) refreshPins(node.slot, minX, height);
}

void LayoutEngine::insetsDidChange(LayoutNode const& node) { refreshPins(node.slot, safeTop, marginRight); }

void LayoutEngine::contentDidChange(LayoutNode const& node) {
    box(node.slot).contentIsStale = true;
    hasStaleContent_ = true;
}

void LayoutEngine::contentPriorityDidChange(LayoutNode const& node) {
    for (auto& content : box(node.slot).content)
        if (content >= 0) solver_.remove(std::exchange(content, -1));
    contentDidChange(node);
}

void LayoutEngine::directionDidChange(LayoutNode const& node) {
    for (auto* constraint : node.mentions) {
        if (constraint->engineId_ < 0) continue;
        auto const& rule = rules_[static_cast<std::size_t>(constraint->engineId_)];
        if (directions(*constraint) == rule.directions) continue;
        removeConstraint(*constraint);
        constraintWasActivated(*constraint);
    }
}

} // namespace trelundo
